#include "GameModuleRules.h"
#include "Misc/FileHelper.h"
#include "NinjaFile.h"
#include "ScratchDirectory.h"

#include <gtest/gtest.h>

TEST(GameModuleRulesTest, ReadsWhatABuildCsListsAndFindsTheFilesBesideIt)
{
	const FScratchDirectory Scratch;
	const auto Write = [&Scratch](const TCHAR* Name, const TCHAR* Text) {
		EXPECT_TRUE(FFileHelper::SaveStringToFile(Text, *(Scratch.Path / Name)));
	};
	Write(TEXT("Source/Deep/Moor/Moor.Build.cs"),
		TEXT(
			"public class Moor : ModuleRules {\n"
			"// PublicDependencyModuleNames.Add(\"Commented\");\n"
			"PublicDependencyModuleNames.AddRange(new string[] { \"Core\", /* \"Old\", */ \"CoreUObject\" });\n"
			"PrivateDependencyModuleNames.Add(\"Json\");\n"
			"DynamicallyLoadedModuleNames.Add(\"Later\");\n"
			"PublicIncludePaths.Add(ModuleDirectory);\n"
			"PrivateIncludePaths.AddRange(new string[] { Path.Combine(ModuleDirectory, \"A\", \"B\"), \"../Shared\" });\n"
			"}"));
	Write(TEXT("Source/Deep/Moor/Public/Bird.h"), TEXT("#include \"Bird.generated.h\"\nUCLASS()"));
	Write(TEXT("Source/Deep/Moor/Public/Plain.h"), TEXT("// Says UCLASS() in a comment only."));
	Write(TEXT("Source/Deep/Moor/NoInclude.h"), TEXT("\tUENUM(BlueprintType)\nenum class E : uint8;"));
	Write(TEXT("Source/Deep/Moor/Private/Moor.cpp"), TEXT(""));
	Write(TEXT("Source/Deep/Other.cpp"), TEXT(""));

	FGameModuleRules Rules;
	FText FailReason;
	ASSERT_TRUE(Rules.Read(Scratch.Path, TEXT("Moor"), FailReason)) << TCHAR_TO_UTF8(*FailReason.ToString());
	const auto Joined = [](const TArray<FString>& Texts) {
		return std::string(TCHAR_TO_UTF8(*FString::Join(Texts, TEXT(" "))));
	};
	EXPECT_EQ(Joined(Rules.Dependencies), "Core CoreUObject Json");
	EXPECT_EQ(Joined(Rules.PublicFolders), "Source/Deep/Moor/Public Source/Deep/Moor");
	EXPECT_EQ(Joined(Rules.PrivateFolders), "Source/Deep/Moor/Private Source/Deep/Moor/A/B Source/Deep/Shared");
	EXPECT_EQ(Joined(Rules.Sources), "Source/Deep/Moor/Private/Moor.cpp");
	EXPECT_EQ(Joined(Rules.ReflectedHeaders), "Source/Deep/Moor/NoInclude.h Source/Deep/Moor/Public/Bird.h");

	EXPECT_FALSE(FGameModuleRules().Read(Scratch.Path, TEXT("Fen"), FailReason));
	EXPECT_TRUE(FailReason.ToString().Contains(TEXT("there is no Fen.Build.cs")));
}

TEST(NinjaFileTest, WordsComeThroughNinjaAndShellUnharmed)
{
	EXPECT_STREQ(TCHAR_TO_UTF8(*FNinjaFile::Quote(TEXT("it's $HOME \"x\""))), "'it'\\''s $$HOME \"x\"'");
	FNinjaFile File;
	File.Step({ .Rule = TEXT("r"), .Outputs = { TEXT("a b") }, .Inputs = { TEXT("c:$") }, .OrderOnly = { TEXT("d") } });
	EXPECT_STREQ(TCHAR_TO_UTF8(*File.GetText()), "\nbuild a$ b: r c$:$$ || d\n");
}
