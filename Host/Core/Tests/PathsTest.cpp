#include "Misc/Paths.h"
#include "CoreMinimal.h"
#include "HAL/PlatformProcess.h"
#include "Utf8.h"

#include <gtest/gtest.h>

namespace
{
struct FPathCase
{
	const char* Input;
	const char* Expected;
};
}

TEST(PathsTest, TheProjectsDirectoriesAreRelativeToTheExecutable)
{
	FPaths::SetProjectFilePath(TEXT("/srv/My Game \u00e9/Game.uproject"));
	EXPECT_TRUE(FPaths::IsRelative(FPaths::ProjectDir()));
	EXPECT_TRUE(FPaths::ProjectDir().StartsWith(TEXT("../")));
	EXPECT_TRUE(FPaths::ProjectConfigDir().EndsWith(TEXT("/My Game \u00e9/Config/")));
	// The trap: joined with a relative base a path stays relative.
	EXPECT_TRUE(FPaths::IsRelative(FPaths::ConvertRelativePathToFull(FPaths::ProjectDir(), TEXT("Source/A.h"))));
	EXPECT_EQ(ToUtf8(FPaths::ConvertRelativePathToFull(
				  FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()), TEXT("Source/../A.h"))),
		"/srv/My Game \u00e9/A.h");
	EXPECT_EQ(ToUtf8(FPaths::ConvertRelativePathToFull(FPaths::ProjectDir(), TEXT("/abs/B.h"))), "/abs/B.h");
	EXPECT_EQ(
		ToUtf8(FPaths::ConvertRelativePathToFull(TEXT("x"))), ToUtf8(FString(FPlatformProcess::BaseDir()) + TEXT("x")));
}

TEST(PathsTest, PartsOfAPath)
{
	const FPathCase Extensions[] = { { "a/b.tar.gz", "gz" }, { ".gitignore", "gitignore" }, { "a.b/c", "" },
		{ "X.CPP", "CPP" } };
	for (const FPathCase& Case : Extensions)
	{
		EXPECT_EQ(ToUtf8(FPaths::GetExtension(Case.Input)), Case.Expected) << Case.Input;
	}
	EXPECT_EQ(ToUtf8(FPaths::GetExtension(TEXT("a.h"), true)), ".h");
	const FPathCase Names[] = { { "a/b/c.h", "c.h" }, { "a/b/", "" }, { "c.h", "c.h" }, { "a\\c.h", "c.h" } };
	for (const FPathCase& Case : Names)
	{
		EXPECT_EQ(ToUtf8(FPaths::GetCleanFilename(Case.Input)), Case.Expected) << Case.Input;
	}
	const FPathCase Folders[] = { { "a/b/c.h", "a/b" }, { "c.h", "" }, { "a/b/", "a/b" } };
	for (const FPathCase& Case : Folders)
	{
		EXPECT_EQ(ToUtf8(FPaths::GetPath(Case.Input)), Case.Expected) << Case.Input;
	}
	EXPECT_EQ(ToUtf8(FPaths::ChangeExtension(TEXT("a"), TEXT("h"))), "a");
	EXPECT_EQ(ToUtf8(FPaths::SetExtension(TEXT("a"), TEXT("h"))), "a.h");
	EXPECT_EQ(ToUtf8(FPaths::Combine(TEXT("a"), TEXT("b"), TEXT("/c"))), "a/b/c");
}

TEST(PathsTest, CollapsingKeepsLeadingDotsAndStopsAtTheRoot)
{
	const FPathCase Cases[] = { { "a/../b", "b" }, { "../a/../b", "../b" }, { "/a/./b/", "/a/b/" },
		{ "../../x", "../../x" } };
	for (const FPathCase& Case : Cases)
	{
		FString Path(Case.Input);
		EXPECT_TRUE(FPaths::CollapseRelativeDirectories(Path));
		EXPECT_EQ(ToUtf8(Path), Case.Expected) << Case.Input;
	}
	FString AboveRoot = TEXT("/../x");
	EXPECT_FALSE(FPaths::CollapseRelativeDirectories(AboveRoot));
}

TEST(PathsTest, MakePathRelativeToTreatsItsBaseAsAFile)
{
	FString Path = TEXT("/p/Source/A.h");
	EXPECT_TRUE(FPaths::MakePathRelativeTo(Path, TEXT("/p/")));
	EXPECT_EQ(ToUtf8(Path), "Source/A.h");
	Path = TEXT("/p/Source/A.h");
	EXPECT_TRUE(FPaths::MakePathRelativeTo(Path, TEXT("/p/Source")));
	EXPECT_EQ(ToUtf8(Path), "Source/A.h") << "without a trailing slash the last part is a file's name";
}

TEST(PathsTest, TemporaryNamesAreThirtyTwoDigits)
{
	const FString Name = FPaths::CreateTempFilename(TEXT("d"), TEXT("P"), TEXT(".log"));
	EXPECT_EQ(Name.Len(), 2 + 1 + 32 + 4);
	EXPECT_TRUE(Name.StartsWith(TEXT("d/P")) && Name.EndsWith(TEXT(".log")));
	EXPECT_FALSE(FPaths::FileExists(Name));
}
