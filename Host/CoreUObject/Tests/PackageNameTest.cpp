#include "Misc/PackageName.h"
#include "Containers/StringConv.h"
#include "Internationalization/Text.h"
#include "Misc/FileHelper.h"
#include "ScratchDirectory.h"
#include "UObject/UObjectGlobals.h"

#include <gtest/gtest.h>

namespace
{
class PackageNameTest : public testing::Test
{
protected:
	PackageNameTest() { FPaths::SetProjectFilePath(Folder.Path / TEXT("Game.uproject")); }
	~PackageNameTest() override { FPaths::SetProjectFilePath(FString()); }
	const FScratchDirectory Folder;
};
}

TEST_F(PackageNameTest, TellsNamesThatAPackageCanHave)
{
	for (const TCHAR* Good : { TEXT("/Game/A"), TEXT("/Game/F/BP_X"), TEXT("/Engine/A"), TEXT("/game/a") })
	{
		EXPECT_TRUE(FPackageName::IsValidLongPackageName(Good)) << TCHAR_TO_UTF8(Good);
	}
	for (const TCHAR* Bad :
		{ TEXT(""), TEXT("A"), TEXT("Game/A"), TEXT("/Game/A/"), TEXT("/Game//A"), TEXT("/Game/A.A"), TEXT("/Game/A B"),
			TEXT("/Game/A:B"), TEXT("/Nope/A"), TEXT("/Script/Engine"), TEXT("/Temp/A") })
	{
		FText Reason;
		EXPECT_FALSE(FPackageName::IsValidLongPackageName(Bad, false, &Reason)) << TCHAR_TO_UTF8(Bad);
		EXPECT_FALSE(Reason.IsEmpty());
	}
	EXPECT_TRUE(FPackageName::IsValidLongPackageName(TEXT("/Script/Engine"), true));
	EXPECT_FALSE(FPackageName::IsValidLongPackageName(TEXT("/Game/") + FString::ChrN(2000, u'a')));
}

TEST_F(PackageNameTest, KnowsTheFoldersThatAreMounted)
{
	const FString Plugin = Folder.Path / TEXT("Plugins/P/Content");
	FPackageName::RegisterMountPoint(TEXT("/P/"), Plugin);
	EXPECT_EQ(FPackageName::LongPackageNameToFilename(TEXT("/P/A"), TEXT(".uasset")), Plugin / TEXT("A.uasset"));
	EXPECT_EQ(FPackageName::FilenameToLongPackageName(Plugin / TEXT("F/B.umap")), TEXT("/P/F/B"));
	EXPECT_FALSE(FPackageName::DoesPackageExist(TEXT("/P/A")));
	FFileHelper::SaveStringToFile(TEXT("x"), *(Plugin / TEXT("A.umap")));
	FString File;
	EXPECT_TRUE(FPackageName::DoesPackageExist(TEXT("/P/A"), &File));
	EXPECT_EQ(File, Plugin / TEXT("A.umap"));
	FPackageName::UnRegisterMountPoint(TEXT("/P/"), Plugin);
	EXPECT_FALSE(FPackageName::DoesPackageExist(TEXT("/P/A")));
	EXPECT_DEATH(FPackageName::LongPackageNameToFilename(TEXT("/P/A")), "mounted root");
	EXPECT_DEATH(FPackageName::LongPackageNameToFilename(TEXT("")), "mounted root");
}

TEST_F(PackageNameTest, TakesPathsApart)
{
	EXPECT_EQ(FPackageName::ObjectPathToPackageName(TEXT("/Game/X/A.A:B.C")), TEXT("/Game/X/A"));
	EXPECT_EQ(FPackageName::ObjectPathToObjectName(TEXT("/Game/X/A.A:B.C")), TEXT("C"));
	EXPECT_EQ(
		FPackageName::ExportTextPathToObjectPath(TEXT("/Script/Engine.Blueprint'/Game/X/A.A'")), TEXT("/Game/X/A.A"));
	EXPECT_EQ(FPackageName::ExportTextPathToObjectPath(TEXT("Blueprint'\"/Game/X/A.A\"'")), TEXT("/Game/X/A.A"));
	EXPECT_EQ(FPackageName::ExportTextPathToObjectPath(TEXT("/Game/X/A.A")), TEXT("/Game/X/A.A"));
	EXPECT_EQ(LoadPackage(nullptr, TEXT("/Game/X/Missing"), LOAD_NoWarn), nullptr);
}
