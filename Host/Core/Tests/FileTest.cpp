#include "CoreMinimal.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "ScratchDirectory.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace
{
class FFileTest : public testing::Test
{
protected:
	FScratchDirectory Scratch;

	FString Path(const TCHAR* Name) const { return Scratch.Path / Name; }
	std::string Bytes(const TCHAR* Name) const
	{
		TArray<uint8> Data;
		EXPECT_TRUE(FFileHelper::LoadFileToArray(Data, *Path(Name)));
		return std::string(reinterpret_cast<const char*>(Data.GetData()), static_cast<size_t>(Data.Num()));
	}
	void Write(const TCHAR* Name, std::string_view Content) const
	{
		EXPECT_TRUE(FFileHelper::SaveArrayToFile(
			TArrayView<const uint8>(reinterpret_cast<const uint8*>(Content.data()), static_cast<int32>(Content.size())),
			*Path(Name)));
	}
	void Link(const TCHAR* Target, const TCHAR* Name) const
	{
		EXPECT_EQ(symlink(TCHAR_TO_UTF8(Target), TCHAR_TO_UTF8(*Path(Name))), 0);
	}
};
using EEncoding = FFileHelper::EEncodingOptions;
}

TEST_F(FFileTest, AutomaticEncodingTurnsToUtf16AtTheFirstForeignLetter)
{
	EXPECT_TRUE(FFileHelper::SaveStringToFile(TEXT("abc"), *Path(TEXT("a"))));
	EXPECT_EQ(Bytes(TEXT("a")), "abc");
	EXPECT_TRUE(FFileHelper::SaveStringToFile(TEXT("\u00e9"), *Path(TEXT("b"))));
	EXPECT_EQ(Bytes(TEXT("b")), "\xff\xfe\xe9" + std::string(1, '\0'));
	EXPECT_TRUE(FFileHelper::SaveStringToFile(TEXT("\u00e9"), *Path(TEXT("c")), EEncoding::ForceUTF8));
	EXPECT_EQ(Bytes(TEXT("c")), "\xef\xbb\xbf\xc3\xa9");
	for (const TCHAR* Name : { TEXT("b"), TEXT("c") })
	{
		FString Text;
		EXPECT_TRUE(FFileHelper::LoadFileToString(Text, *Path(Name)));
		EXPECT_TRUE(Text.Equals(TEXT("\u00e9")));
	}
}

TEST_F(FFileTest, LinesKeepBlanksAndAFinalBreakAddsNone)
{
	Write(TEXT("lines"), "one\r\n\ntwo\r\n");
	TArray<FString> Lines;
	EXPECT_TRUE(FFileHelper::LoadFileToStringArray(Lines, *Path(TEXT("lines"))));
	EXPECT_EQ(Lines.Num(), 3);
	EXPECT_TRUE(FFileHelper::SaveStringArrayToFile(Lines, *Path(TEXT("lines"))));
	EXPECT_EQ(Bytes(TEXT("lines")), "one\n\ntwo\n");
	Write(TEXT("empty"), "");
	EXPECT_TRUE(FFileHelper::LoadFileToStringArray(Lines, *Path(TEXT("empty"))));
	EXPECT_EQ(Lines.Num(), 0);
	EXPECT_FALSE(FFileHelper::LoadFileToStringArray(Lines, *Path(TEXT("missing"))));
}

TEST_F(FFileTest, AppendAndFoldersAndReadOnlyFiles)
{
	const FString Deep = Path(TEXT("new/folder/log.txt"));
	for (const TCHAR* Line : { TEXT("1"), TEXT("\u00e9") })
	{
		EXPECT_TRUE(FFileHelper::SaveStringToFile(
			Line, *Deep, EEncoding::ForceUTF8WithoutBOM, &IFileManager::Get(), FILEWRITE_Append));
	}
	EXPECT_EQ(Bytes(TEXT("new/folder/log.txt")), "1\xc3\xa9");
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	EXPECT_TRUE(Files.SetReadOnly(*Deep, true));
	EXPECT_FALSE(FFileHelper::SaveStringToFile(TEXT("x"), *Deep));
	EXPECT_FALSE(Files.DeleteFile(*Deep)) << "a read-only file is not deleted";
	EXPECT_TRUE(Files.SetReadOnly(*Deep, false));
	EXPECT_TRUE(Files.DeleteFile(*Deep));
	EXPECT_FALSE(Files.DeleteFile(*Deep)) << "a missing file is not a success here";
	EXPECT_TRUE(IFileManager::Get().Delete(*Deep)) << "but it is one here";
}

TEST_F(FFileTest, ListingsAreBareNamesAndSearchesClear)
{
	for (const TCHAR* Name : { TEXT("a.log"), TEXT(".hidden"), TEXT("sub/b.LOG") })
	{
		Write(Name, "x");
	}
	TArray<FString> Names = { TEXT("kept") };
	IFileManager::Get().FindFiles(Names, *(Scratch.Path / TEXT("*")), true, false);
	Names.Sort();
	EXPECT_EQ(FString::Join(Names, TEXT(",")), TEXT(".hidden,a.log,kept"));
	Names.Empty();
	IFileManager::Get().FindFiles(Names, *(Scratch.Path / TEXT("*")), false, true);
	EXPECT_EQ(FString::Join(Names, TEXT(",")), TEXT("sub"));
	Names = { TEXT("gone") };
	IFileManager::Get().FindFilesRecursive(Names, *Scratch.Path, TEXT("*.log"), true, false);
	EXPECT_EQ(Names.Num(), 2);
	Names.Empty();
	FPlatformFileManager::Get().GetPlatformFile().FindFiles(Names, *Scratch.Path, TEXT(".log"));
	EXPECT_EQ(FString::Join(Names, TEXT(",")), Scratch.Path / TEXT("a.log"));
	IFileManager::Get().FindFiles(Names, TEXT("/no/such/folder/*"), true, true);
	EXPECT_EQ(Names.Num(), 1);
	EXPECT_FALSE(FPaths::FileExists(Scratch.Path));
	EXPECT_FALSE(FPaths::DirectoryExists(Path(TEXT("a.log"))));
}

TEST_F(FFileTest, RecursiveDeletionRemovesLinksAndNeverWhatTheyPointTo)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	for (const TCHAR* Name : { TEXT("outside/kept.txt"), TEXT("outside/deep/kept.txt"), TEXT("tree/own/a.txt") })
	{
		Write(Name, "kept");
	}
	const FString Locked = Path(TEXT("outside/kept.txt"));
	EXPECT_TRUE(Files.SetReadOnly(*Locked, true));
	Link(TEXT("../outside"), TEXT("tree/folder"));
	Link(TEXT("../../outside/kept.txt"), TEXT("tree/own/file"));
	Link(TEXT(".."), TEXT("tree/own/circle"));
	Link(TEXT("nowhere"), TEXT("tree/own/dangling"));
	Link(TEXT("outside"), TEXT("link"));

	EXPECT_EQ(Files.IsSymlink(*Path(TEXT("link"))), ESymlinkResult::Symlink);
	EXPECT_EQ(Files.IsSymlink(*Path(TEXT("outside"))), ESymlinkResult::NonSymlink);
	EXPECT_EQ(Files.IsSymlink(*Path(TEXT("missing"))), ESymlinkResult::NonSymlink);
	EXPECT_TRUE(IFileManager::Get().DeleteDirectory(*Path(TEXT("tree")), true, true));
	EXPECT_FALSE(Files.DirectoryExists(*Path(TEXT("tree"))));
	Link(TEXT("outside"), TEXT("second"));
	EXPECT_TRUE(IFileManager::Get().DeleteDirectory(*Path(TEXT("link")), true, true));
	EXPECT_TRUE(IFileManager::Get().DeleteDirectory(*Path(TEXT("second//")), true, true));
	EXPECT_FALSE(Files.DirectoryExists(*Path(TEXT("second"))));
	EXPECT_EQ(Files.IsSymlink(*Path(TEXT("link"))), ESymlinkResult::NonSymlink) << "still there";
	EXPECT_EQ(Bytes(TEXT("outside/kept.txt")), "kept");
	EXPECT_EQ(Bytes(TEXT("outside/deep/kept.txt")), "kept");
	EXPECT_TRUE(Files.IsReadOnly(*Locked)) << "the mode of what a link points to has changed";

	Link(TEXT("kept.txt"), TEXT("outside/second"));
	EXPECT_TRUE(IFileManager::Get().Delete(*Path(TEXT("outside/second")), true, true));
	Link(TEXT("missing"), TEXT("dangling"));
	EXPECT_TRUE(IFileManager::Get().Delete(*Path(TEXT("dangling")), true));
	EXPECT_EQ(Files.IsSymlink(*Path(TEXT("dangling"))), ESymlinkResult::NonSymlink) << "still there";
	EXPECT_FALSE(IFileManager::Get().Delete(*Path(TEXT("dangling")), true)) << "there is nothing left to delete";
	EXPECT_TRUE(Files.IsReadOnly(*Locked)) << "a single deletion has changed it";
	EXPECT_TRUE(Files.SetReadOnly(*Locked, false));
}

TEST_F(FFileTest, RecursiveWalksFollowLinksAndEndWhereTheyLeadBack)
{
	Write(TEXT("outside/a.txt"), "x");
	Write(TEXT("tree/own/b.txt"), "x");
	Link(TEXT("../outside"), TEXT("tree/folder"));
	Link(TEXT("."), TEXT("tree/circle"));
	Link(TEXT("."), TEXT("tree/circle2"));
	Link(TEXT(".."), TEXT("tree/own/up"));
	Link(TEXT("../tree"), TEXT("outside/across"));
	Link(TEXT("tree"), TEXT("entry"));
	TArray<FString> Names;
	IFileManager::Get().FindFilesRecursive(Names, *Path(TEXT("entry")), TEXT("*.txt"), true, false);
	Names.Sort();
	EXPECT_EQ(FString::Join(Names, TEXT(",")),
		FString::Join(TArray<FString>{ Path(TEXT("entry/folder/a.txt")), Path(TEXT("entry/own/b.txt")) }, TEXT(",")));
}

TEST_F(FFileTest, TimeStampsAreUtc)
{
	Write(TEXT("now"), "x");
	const FTimespan Age = FDateTime::UtcNow() - IFileManager::Get().GetTimeStamp(*Path(TEXT("now")));
	EXPECT_LT(FMath::Abs(Age.GetTotalSeconds()), 60.0);
	EXPECT_EQ(IFileManager::Get().GetTimeStamp(*Path(TEXT("missing"))), FDateTime::MinValue());
	EXPECT_EQ(IFileManager::Get().FileSize(*Path(TEXT("missing"))), INDEX_NONE);
}
