#include "CoreMinimal.h"
#include "Misc/CommandLine.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "ScratchDirectory.h"
#include "Utf8.h"

#include <gtest/gtest.h>

namespace
{
std::string Values(const FConfigFile& File, const TCHAR* Key)
{
	TArray<FString> Found;
	File.GetArray(TEXT("S"), Key, Found);
	return ToUtf8(FString::Join(Found, TEXT("|")));
}
}

TEST(ConfigFileTest, TextRules)
{
	FConfigFile File;
	File.ProcessInputFileContents(TEXT(
		"Stray=1\n[S]\n; Comment=1\n  Url = http://h/x;y \nQuoted=\"  kept \"\nLong=a\\\nb\nList=1\nList=2\n+List=2\n.List=2\n-List=1\nEmpty=\n"));
	struct FCase
	{
		const TCHAR* Key;
		const char* Expected;
	};
	const FCase Cases[] = { { TEXT("url"), "http://h/x;y" }, { TEXT("Quoted"), "  kept " }, { TEXT("Long"), "ab" },
		{ TEXT("List"), "2|2" }, { TEXT("Empty"), "" }, { TEXT("Comment"), "" } };
	for (const FCase& Case : Cases)
	{
		EXPECT_EQ(Values(File, Case.Key), Case.Expected) << ToUtf8(Case.Key);
	}
	FString Untouched = TEXT("old");
	EXPECT_FALSE(File.GetString(TEXT("S"), TEXT("Stray"), Untouched));
	EXPECT_TRUE(Untouched.Equals(TEXT("old")));
	EXPECT_TRUE(File.GetString(TEXT("s"), TEXT("EMPTY"), Untouched)) << "section and key ignore case";
}

TEST(ConfigFileTest, AKeyThatIsTooLongForANameIsIgnored)
{
	FConfigFile File;
	const FString Key = FString::ChrN(2000, u'K');
	File.CombineFromBuffer(TEXT("[S]\n") + Key + TEXT("=1\n+") + Key + TEXT("=2\nA=3\n[") + Key + TEXT("]\nB=4\n"));
	EXPECT_EQ(Values(File, TEXT("A")), "3");
	FString Value;
	EXPECT_TRUE(File.GetString(*Key, TEXT("B"), Value)) << "sections are no names";
}

TEST(ConfigFileTest, ALayerAboveReplacesPlainKeysAndAddsToArrays)
{
	FConfigFile File;
	File.CombineFromBuffer(TEXT("[S]\nA=1\n+List=x\n+List=y\n"));
	File.CombineFromBuffer(TEXT("[S]\nA=2\n-List=x\n+List=z\n"));
	EXPECT_EQ(Values(File, TEXT("A")), "2");
	EXPECT_EQ(Values(File, TEXT("List")), "y|z");
	File.CombineFromBuffer(TEXT("[S]\n!List=ClearArray\n"));
	EXPECT_EQ(Values(File, TEXT("List")), "");
}

TEST(ConfigCacheTest, ChangesComeBackAfterARestartAndTheBaseIsNotRepeated)
{
	FScratchDirectory Scratch;
	FPaths::SetProjectFilePath(Scratch.Path / TEXT("Game.uproject"));
	FFileHelper::SaveStringToFile(
		TEXT("[S]\nKept=base\nChanged=base\nGone=base\n"), *(Scratch.Path / TEXT("Config/DefaultMine.ini")));
	FConfigCacheIni::InitializeConfigSystem();
	const FString File = FConfigCacheIni::GetConfigFilename(TEXT("Mine"));
	const FString Odd = TEXT(" \"odd\"\nvalue\\");
	GConfig->SetString(TEXT("S"), TEXT("Changed"), TEXT("mine"), File);
	GConfig->SetString(TEXT("S"), TEXT("Odd"), *Odd, File);
	GConfig->SetArray(TEXT("S"), TEXT("List"), { TEXT("b"), TEXT("a"), TEXT("b") }, File);
	EXPECT_TRUE(GConfig->RemoveKey(TEXT("S"), TEXT("Gone"), File));
	GConfig->Flush(false);

	FString Saved;
	ASSERT_TRUE(FFileHelper::LoadFileToString(Saved, *File));
	EXPECT_FALSE(Saved.Contains(TEXT("Kept")));
	FConfigCacheIni::InitializeConfigSystem();
	FString Value;
	EXPECT_TRUE(GConfig->GetString(TEXT("S"), TEXT("Changed"), Value, File));
	EXPECT_EQ(ToUtf8(Value), "mine");
	EXPECT_TRUE(GConfig->GetString(TEXT("S"), TEXT("Odd"), Value, File));
	EXPECT_TRUE(Value.Equals(Odd));
	EXPECT_TRUE(GConfig->GetString(TEXT("S"), TEXT("Kept"), Value, File));
	EXPECT_FALSE(GConfig->GetString(TEXT("S"), TEXT("Gone"), Value, File));
	TArray<FString> List;
	EXPECT_EQ(GConfig->GetArray(TEXT("S"), TEXT("List"), List, File), 3);
	EXPECT_EQ(ToUtf8(FString::Join(List, TEXT(","))), "b,a,b");
}

TEST(ConfigCacheTest, TheCommandLineWinsAndIsNotSaved)
{
	FScratchDirectory Scratch;
	FPaths::SetProjectFilePath(Scratch.Path / TEXT("Game.uproject"));
	FCommandLine::Set(TEXT("-ini:Engine:[SSL]:Path=\"/a b/c.pem\",[HTTP]:Limit=5"));
	FConfigCacheIni::InitializeConfigSystem();
	FCommandLine::Set(TEXT(""));
	FString Value;
	EXPECT_TRUE(GConfig->GetString(TEXT("SSL"), TEXT("Path"), Value, GEngineIni));
	EXPECT_EQ(ToUtf8(Value), "/a b/c.pem");
	int32 Limit = 0;
	EXPECT_TRUE(GConfig->GetInt(TEXT("HTTP"), TEXT("Limit"), Limit, GEngineIni));
	EXPECT_EQ(Limit, 5);
	GConfig->SetString(TEXT("S"), TEXT("K"), TEXT("v"), GEngineIni);
	GConfig->Flush(false);
	FString Saved;
	EXPECT_TRUE(FFileHelper::LoadFileToString(Saved, *GEngineIni));
	EXPECT_FALSE(Saved.Contains(TEXT("Limit")));
}
