#include "Agent/Files/FileRescue.h"
#include "Agent/Files/FileUtils.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"

namespace FileEditsTest
{
/** A file's bytes, a Latin-1 character each. */
FString BytesOf(const FString& File)
{
	TArray<uint8> Bytes;
	FFileHelper::LoadFileToArray(Bytes, *File);
	FString Text;
	for (const uint8 Byte : Bytes)
	{
		Text.AppendChar(static_cast<TCHAR>(Byte));
	}
	return Text;
}

void WriteBytes(const FString& File, const TArray<uint8>& Bytes)
{
	FFileHelper::SaveArrayToFile(Bytes, *File);
}

/** "%s" stands for the file. */
FString With(const TCHAR* Expected, const FString& File)
{
	return FString(Expected).Replace(TEXT("%s"), *File);
}

struct FUpdateCase
{
	const TCHAR* What;
	const TCHAR* Before;
	const TCHAR* Old;
	const TCHAR* New;
	const TCHAR* After;
	int32 Count;
};

const FUpdateCase UpdateCases[] = {
	{ TEXT("replaces all occurrences"), TEXT("a b a"), TEXT("a"), TEXT("c"), TEXT("c b c"), 2 },
	{ TEXT("regards letter case"), TEXT("Abc abc"), TEXT("abc"), TEXT("x"), TEXT("Abc x"), 1 },
	{ TEXT("does not read its own output again"), TEXT("aa"), TEXT("a"), TEXT("aa"), TEXT("aaaa"), 2 },
	{ TEXT("takes overlapping places once"), TEXT("aaaaa"), TEXT("aa"), TEXT("b"), TEXT("bba"), 2 },
	{ TEXT("finds \\n in a file of \\r\\n, and leaves the new text alone"), TEXT("one\r\ntwo\r\nthree\r\n"),
		TEXT("one\ntwo"), TEXT("1\n2"), TEXT("1\n2\r\nthree\r\n"), 1 },
	{ TEXT("finds \\r\\n in a file of \\n"), TEXT("one\ntwo\n"), TEXT("one\r\ntwo"), TEXT("x"), TEXT("x\n"), 1 },
	{ TEXT("finds spaces in a file of tabs"), TEXT("\tif\n\t\tx\n"), TEXT("    if\n        x"), TEXT("y"), TEXT("y\n"),
		1 },
	{ TEXT("finds tabs in a file of spaces"), TEXT("    if\n        x\n"), TEXT("\tif\n\t\tx"), TEXT("y"), TEXT("y\n"),
		1 },
	{ TEXT("adapts line ends and tabs together"), TEXT("\tif\r\n\t\tx\r\n"), TEXT("    if\n        x"), TEXT("y"),
		TEXT("y\r\n"), 1 },
	{ TEXT("adapts the line ends alone when that is all that differs"), TEXT("a    b\r\nc\td\r\n"), TEXT("a    b\nc"),
		TEXT("z"), TEXT("z\td\r\n"), 1 },
	{ TEXT("adapts the tabs alone when the line ends are mixed"), TEXT("\tone\ntwo\r\n"), TEXT("    one\ntwo"),
		TEXT("z"), TEXT("z\r\n"), 1 },
	{ TEXT("takes an exact place, though others would match when adapted"), TEXT("a\tb a    b"), TEXT("a\tb"),
		TEXT("c"), TEXT("c a    b"), 1 },
	{ TEXT("replaces beyond the basic plane"), TEXT("x \U0001F426 y \U0001F426"), TEXT("\U0001F426"),
		TEXT("\U0001D11E!"), TEXT("x \U0001D11E! y \U0001D11E!"), 2 },
	{ TEXT("removes text"), TEXT("a, b"), TEXT(", b"), TEXT(""), TEXT("a"), 1 },
};

struct FRefusedUpdateCase
{
	const TCHAR* What;
	const TCHAR* Before;
	const TCHAR* Old;
	const TCHAR* Error;
};

const FRefusedUpdateCase RefusedUpdateCases[] = {
	{ TEXT("a text that is not there"), TEXT("abc"), TEXT("ABC"), TEXT("Error: String not found in file: %s") },
	{ TEXT("one that ends within a line end"), TEXT("a\r\nb"), TEXT("a\r"),
		TEXT("Error: String not found in file: %s") },
	{ TEXT("mixed line ends that no variant meets"), TEXT("a\r\nb\nc"), TEXT("a\nb\nc"),
		TEXT("Error: No replacements made in file: %s") },
	{ TEXT("tabs and spaces mixed within"), TEXT("a\tb    c"), TEXT("a    b\tc"),
		TEXT("Error: No replacements made in file: %s") },
	{ TEXT("an empty text"), TEXT("abc"), TEXT(""), TEXT("Error: No replacements made in file: %s") },
	{ TEXT("the new text itself"), TEXT("abc new"), TEXT("new"), TEXT("Error: No replacements made in file: %s") },
};

struct FInsertCase
{
	const TCHAR* What;
	const TCHAR* Before;
	int32 LineIndex;
	const TCHAR* After;
	int32 Position;
};

const FInsertCase InsertCases[] = {
	{ TEXT("inserts at the top"), TEXT("a\nb\n"), 0, TEXT("new\na\nb\n"), 0 },
	{ TEXT("inserts below some lines"), TEXT("a\nb\n"), 1, TEXT("a\nnew\nb\n"), 1 },
	{ TEXT("appends, and ends the line that had no end"), TEXT("a\nb"), 2, TEXT("a\nb\nnew\n"), 2 },
	{ TEXT("takes -4 for the top"), TEXT("a\n"), -4, TEXT("new\na\n"), 0 },
	{ TEXT("takes a number past the end for the end"), TEXT("a\n"), MAX_int32, TEXT("a\nnew\n"), 1 },
	{ TEXT("inserts into an empty file"), TEXT(""), 3, TEXT("new\n"), 0 },
	{ TEXT("ends all lines the platform's way"), TEXT("a\r\n\r\nb\r\n"), 1, TEXT("a\nnew\n\nb\n"), 1 },
};
}

DEFINE_SPEC(FKestrelFileEditsSpec, "Kestrel.FileEdits", KestrelTest::Flags)
void FKestrelFileEditsSpec::Define()
{
	Describe("Replacing a text", [this]() {
		for (const FileEditsTest::FUpdateCase& Case : FileEditsTest::UpdateCases)
		{
			It(Case.What, [this, &Case]() {
				const FKestrelTestFolder Folder;
				const FString File = Folder.Full(TEXT("a.txt"));
				Folder.Write(TEXT("a.txt"), Case.Before);
				FString Before;
				FString After;
				KestrelTest::TestSameText(*this, TEXT("result"),
					FFileUtils::UpdateFile(Folder.Name / TEXT("a.txt"), Case.Old, Case.New, Before, After),
					FString::Printf(TEXT("Successfully updated file: %s with %d replacements"), *File, Case.Count));
				KestrelTest::TestSameText(*this, TEXT("file"), FFileUtils::ReadFile(File), Case.After);
				KestrelTest::TestSameText(*this, TEXT("before"), Before, Case.Before);
				KestrelTest::TestSameText(*this, TEXT("after"), After, Case.After);
			});
		}

		It("refuses what is not there, and leaves the file alone", [this]() {
			const FKestrelTestFolder Folder;
			const FString File = Folder.Full(TEXT("a.txt"));
			for (const FileEditsTest::FRefusedUpdateCase& Case : FileEditsTest::RefusedUpdateCases)
			{
				Folder.Write(TEXT("a.txt"), Case.Before);
				FString Before;
				FString After;
				KestrelTest::TestSameText(*this, Case.What,
					FFileUtils::UpdateFile(File, Case.Old, TEXT("new"), Before, After),
					FileEditsTest::With(Case.Error, File));
				KestrelTest::TestSameText(*this, Case.What, FFileUtils::ReadFile(File), Case.Before);
			}
		});

		It("makes ten thousand replacements", [this]() {
			const FKestrelTestFolder Folder;
			FString Text;
			FString Expected;
			for (int32 Index = 0; Index < 10000; ++Index)
			{
				Text += TEXT("\tHealth = 1;\r\n");
				Expected += TEXT("\tLife = 1;\r\n");
			}
			Folder.Write(TEXT("a.txt"), Text);
			FString Before;
			FString After;
			const FString Result = FFileUtils::UpdateFile(
				Folder.Full(TEXT("a.txt")), TEXT("    Health = 1;\n"), TEXT("\tLife = 1;\r\n"), Before, After);
			TestTrue(TEXT("count"), Result.EndsWith(TEXT("with 10000 replacements")));
			TestTrue(TEXT("text"), FFileUtils::ReadFile(Folder.Full(TEXT("a.txt"))).Equals(Expected));
		});

		It("reads any encoding, writes UTF-8 without a mark, and refuses what is no text", [this]() {
			const FKestrelTestFolder Folder;
			const FString File = Folder.Full(TEXT("a.txt"));
			FString Before;
			FString After;
			const auto Update = [&]() { return FFileUtils::UpdateFile(File, TEXT("a"), TEXT("b"), Before, After); };
			const TArray<uint8> Encodings[] = {
				{ 0xFF, 0xFE, 'a', 0, 0xE4, 0 },
				{ 0xFE, 0xFF, 0, 'a', 0, 0xE4 },
				{ 0xEF, 0xBB, 0xBF, 'a', 0xC3, 0xA4 },
				{ 'a', 0xC3, 0xA4 },
			};
			for (const TArray<uint8>& Encoding : Encodings)
			{
				FileEditsTest::WriteBytes(File, Encoding);
				TestTrue(TEXT("is replaced"), Update().StartsWith(TEXT("Successfully")));
				KestrelTest::TestSameText(*this, TEXT("bytes"), FileEditsTest::BytesOf(File), TEXT("b\u00C3\u00A4"));
			}
			const TArray<uint8> Binaries[] = {
				{ 'a', 0xE4, 'a' },
				{ 'a', 0, 'a' },
				{ 0xFF, 0xFE, 'a', 0, 0x00, 0xD8, 'a', 0 },
				{ 0xFF, 0xFE, 'a', 0, 'b' },
			};
			for (const TArray<uint8>& Binary : Binaries)
			{
				FileEditsTest::WriteBytes(File, Binary);
				const FString Stored = FileEditsTest::BytesOf(File);
				const FString Expected = FileEditsTest::With(
					TEXT("Error: File holds bytes that are no text, and editing would lose them: %s"), File);
				KestrelTest::TestSameText(*this, TEXT("update"), Update(), Expected);
				KestrelTest::TestSameText(
					*this, TEXT("insert"), FFileUtils::InsertIntoFile(File, 0, TEXT("x")), Expected);
				FFileUtils::ReplaceLineInFile(File, 1, TEXT("x"));
				KestrelTest::TestSameText(*this, TEXT("bytes"), FileEditsTest::BytesOf(File), Stored);
			}
		});
	});

	Describe("Lines", [this]() {
		for (const FileEditsTest::FInsertCase& Case : FileEditsTest::InsertCases)
		{
			It(Case.What, [this, &Case]() {
				const FKestrelTestFolder Folder;
				const FString File = Folder.Full(TEXT("a.txt"));
				Folder.Write(TEXT("a.txt"), Case.Before);
				KestrelTest::TestSameText(*this, TEXT("result"),
					FFileUtils::InsertIntoFile(File, Case.LineIndex, TEXT("new")),
					FString::Printf(TEXT("Successfully inserted text at line %d in file: %s"), Case.Position, *File));
				KestrelTest::TestSameText(*this, TEXT("file"), FFileUtils::ReadFile(File), Case.After);
			});
		}

		It("are replaced by number, and out of range not at all", [this]() {
			const FKestrelTestFolder Folder;
			const FString File = Folder.Full(TEXT("a.txt"));
			Folder.Write(TEXT("a.txt"), TEXT("a\nb\nc"));
			for (const int32 OutOfRange : { 0, -1, 4, MIN_int32 })
			{
				FFileUtils::ReplaceLineInFile(File, OutOfRange, TEXT("x"));
				KestrelTest::TestSameText(*this, TEXT("untouched"), FFileUtils::ReadFile(File), TEXT("a\nb\nc"));
			}
			FFileUtils::ReplaceLineInFile(File, 2, TEXT("x"));
			KestrelTest::TestSameText(*this, TEXT("replaced"), FFileUtils::ReadFile(File), TEXT("a\nx\nc\n"));
			FFileUtils::ReplaceLineInFile(Folder.Full(TEXT("no.txt")), 1, TEXT("x"));
			TestFalse(TEXT("nothing is created"), FPaths::FileExists(Folder.Full(TEXT("no.txt"))));
		});
	});

	Describe("Whole files", [this]() {
		It("are created with their folders, in the encoding that the text needs", [this]() {
			const FKestrelTestFolder Folder;
			const FString File = Folder.Full(TEXT("deep/er/a.txt"));
			KestrelTest::TestSameText(*this, TEXT("result"),
				FFileUtils::CreateNewFileWithContent(Folder.Name / TEXT("deep/er/a.txt"), TEXT("text")),
				TEXT("File created successfully: ") + File);
			KestrelTest::TestSameText(*this, TEXT("plain"), FileEditsTest::BytesOf(File), TEXT("text"));
			FFileUtils::CreateNewFileWithContent(File, TEXT("\u00E4"));
			KestrelTest::TestSameText(*this, TEXT("beyond ASCII"), FileEditsTest::BytesOf(File),
				FString(TEXT("\u00FF\u00FE\u00E4")) + FString::ConstructFromPtrSize(TEXT("\0"), 1));
			KestrelTest::TestSameText(*this, TEXT("a folder in the way"),
				FFileUtils::CreateNewFileWithContent(Folder.Full(TEXT("deep")), TEXT("x")),
				TEXT("Error: Failed to create file: ") + Folder.Full(TEXT("deep")));
			KestrelTest::TestSameText(*this, TEXT("a file in the way"),
				FFileUtils::CreateNewFileWithContent(File / TEXT("b.txt"), TEXT("x")),
				TEXT("Error: Failed to create directory: ") + File);
		});

		It("are replaced as UTF-8, and only when they exist", [this]() {
			const FKestrelTestFolder Folder;
			const FString File = Folder.Full(TEXT("a.txt"));
			KestrelTest::TestSameText(*this, TEXT("missing"), FFileUtils::ReplaceFile(File, TEXT("x")),
				TEXT("Error: File does not exist: ") + File);
			FileEditsTest::WriteBytes(File, { 0xFF, 0xFE, 'a', 0 });
			KestrelTest::TestSameText(*this, TEXT("result"), FFileUtils::ReplaceFile(File, TEXT("\u00E4")),
				TEXT("Successfully replaced file: ") + File);
			KestrelTest::TestSameText(*this, TEXT("bytes"), FileEditsTest::BytesOf(File), TEXT("\u00C3\u00A4"));
		});

		It("are deleted once", [this]() {
			const FKestrelTestFolder Folder;
			const FString File = Folder.Full(TEXT("a.txt"));
			Folder.Write(TEXT("a.txt"), TEXT("x"));
			KestrelTest::TestSameText(
				*this, TEXT("first"), FFileUtils::DeleteFile(File), TEXT("Successfully deleted file: ") + File);
			KestrelTest::TestSameText(*this, TEXT("second"), FFileUtils::DeleteFile(File),
				TEXT("Error: File does not exist at path: ") + File);
			KestrelTest::TestSameText(*this, TEXT("a folder"), FFileUtils::DeleteFile(Folder.Path),
				TEXT("Error: File does not exist at path: ") + Folder.Path);
			TestTrue(TEXT("the folder stays"), FPaths::DirectoryExists(Folder.Path));
		});
	});

	Describe("A rescue copy", [this]() {
		It("is there during a rewrite, and gone after it", [this]() {
			const FKestrelTestFolder Folder;
			const FString File = Folder.Full(TEXT("a.txt"));
			Folder.Write(TEXT("a.txt"), TEXT("old"));
			{
				FFileRescue Rescue(File);
				TestTrue(TEXT("kept"), Rescue.IsKept());
				IFileManager::Get().Delete(*File);
				const TArray<FFileRescue::FLeftCopy> Left = FFileRescue::FindLeftCopies();
				TestEqual(TEXT("is what a crash would leave"), Left.Num(), 1);
				KestrelTest::TestSameText(*this, TEXT("original"), Left[0].Original, File);
				KestrelTest::TestSameText(*this, TEXT("copy"), FFileUtils::ReadFile(Left[0].Copy), TEXT("old"));
				Rescue.PutBack();
			}
			KestrelTest::TestSameText(*this, TEXT("put back"), FFileUtils::ReadFile(File), TEXT("old"));
			FFileUtils::ReplaceFile(File, TEXT("new"));
			TestEqual(TEXT("nothing is left"), FFileRescue::FindLeftCopies().Num(), 0);
		});

		It("is not offered when the file is as it was", [this]() {
			const FKestrelTestFolder Folder;
			Folder.Write(TEXT("a.txt"), TEXT("old"));
			const FFileRescue Rescue(Folder.Full(TEXT("a.txt")));
			TestEqual(TEXT("left"), FFileRescue::FindLeftCopies().Num(), 0);
		});
	});
}
