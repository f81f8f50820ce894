#include "Agent/Files/FileRescue.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/TextFile.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "KestrelSettings.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"

namespace FileEdits
{
using EEncoding = FFileHelper::EEncodingOptions;

constexpr EEncoding Utf8 = EEncoding::ForceUTF8WithoutBOM;
const TCHAR* const TabAsBlanks = TEXT("    ");

/** For created files and those that text is inserted into. */
EEncoding GetEncodingOfNewText()
{
	return GetDefault<UKestrelSettings>()->NewFileEncoding == EKestrelFileEncoding::Utf8 ? Utf8 : EEncoding::AutoDetect;
}

/** Checks that a file can be edited as text. @return an error, empty when all is well */
FString LoadForEdit(const FString& FullPath, FString& OutText)
{
	if (!FPaths::FileExists(FullPath))
	{
		return FFileUtils::MakeError(TEXT("File does not exist"), FullPath);
	}
	TArray<uint8> Bytes;
	switch (KestrelTextFile::Load(FullPath, OutText, Bytes))
	{
	case KestrelTextFile::EContent::Unreadable:
		return FFileUtils::MakeError(TEXT("Failed to read file"), FullPath);
	case KestrelTextFile::EContent::Binary:
		return FFileUtils::MakeError(FFileUtils::BytesAreNoText, FullPath);
	default:
		return FString();
	}
}

/**
 * Lets Write fill the file, which keeps its permissions and the links that lead to it; when that fails, the file gets
 * its old content again.
 *
 * @param WriteError  what a failed write is called
 * @return an error, empty when all is well
 */
FString Rewrite(const FString& FullPath, const TCHAR* WriteError, TFunctionRef<bool()> Write)
{
	FFileRescue Rescue(FullPath);
	if (!Rescue.IsKept())
	{
		return FFileUtils::MakeError(TEXT("No copy could be kept, so the file was left as it is"), FullPath);
	}
	if (FPlatformFileManager::Get().GetPlatformFile().IsReadOnly(*FullPath))
	{
		return FFileUtils::MakeError(TEXT("Failed to delete existing file"), FullPath);
	}
	if (!Write())
	{
		Rescue.PutBack();
		return FFileUtils::MakeError(WriteError, FullPath);
	}
	return FString();
}

FString RewriteText(const FString& FullPath, const FString& Text)
{
	return Rewrite(FullPath, TEXT("Failed to write new content to file"),
		[&]() { return FFileHelper::SaveStringToFile(Text, *FullPath, Utf8); });
}

FString RewriteLines(const FString& FullPath, const FString& Text)
{
	return Rewrite(FullPath, TEXT("Failed to write modified content to file"),
		[&]() { return FFileHelper::SaveStringToFile(Text, *FullPath, GetEncodingOfNewText()); });
}

/** Lets Write make a file; when that fails, nothing of it stays, nor of a file that was there anything goes. */
FString Create(const FString& FullPath, TFunctionRef<bool()> Write)
{
	const TCHAR* const Failure = TEXT("Failed to create file");
	if (FPaths::FileExists(FullPath))
	{
		const FString Error = Rewrite(FullPath, Failure, Write);
		if (!Error.IsEmpty())
		{
			return Error;
		}
	}
	else if (!Write())
	{
		FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*FullPath);
		return FFileUtils::MakeError(Failure, FullPath);
	}
	FFileUtils::AddNewFileToSourceControl(FullPath);
	return FString::Printf(TEXT("File created successfully: %s"), *FullPath);
}

FString ReplaceAll(const FString& Text, const TCHAR* From, const TCHAR* To)
{
	return Text.Replace(From, To, ESearchCase::CaseSensitive);
}

bool Holds(const FString& Text, const TCHAR* Part)
{
	return Text.Contains(Part, ESearchCase::CaseSensitive);
}

/** The text without the differences that an old string may have to the file. */
FString Normalize(const FString& Text)
{
	return ReplaceAll(ReplaceAll(Text, TEXT("\r\n"), TEXT("\n")), TEXT("\t"), TabAsBlanks);
}

bool HoldsNormalized(const FString& Text, const FString& OldString)
{
	// Copies of a large file take their time. An exact match says the same, unless it ends in the middle of a "\r\n".
	if (!OldString.EndsWith(TEXT("\r")) && Holds(Text, *OldString))
	{
		return true;
	}
	return Holds(Normalize(Text), *Normalize(OldString));
}

FString AdaptLineEnds(const FString& OldString, const FString& Text)
{
	return Holds(Text, TEXT("\r\n")) ? ReplaceAll(OldString, TEXT("\n"), TEXT("\r\n"))
									 : ReplaceAll(OldString, TEXT("\r\n"), TEXT("\n"));
}

FString AdaptTabs(const FString& OldString, const FString& Text)
{
	return Holds(Text, TEXT("\t")) ? ReplaceAll(OldString, TabAsBlanks, TEXT("\t"))
								   : ReplaceAll(OldString, TEXT("\t"), TabAsBlanks);
}

/** @return the count of replacements made in Text */
/**
 * FString::ReplaceInline into another text, which is made once and at its length: a large one takes its time.
 *
 * @return how often it was replaced, which is never for a text that would stay the same; then OutAfter is left alone
 */
int32 ReplaceInto(const FString& Text, const FString& OldString, const FString& NewString, FString& OutAfter)
{
	// Texts end at a null character, as they do for the engine.
	const int32 OldLength = FCString::Strlen(*OldString);
	const int32 NewLength = FCString::Strlen(*NewString);
	if (OldLength == 0 || FCString::Strcmp(*OldString, *NewString) == 0)
	{
		return 0;
	}
	TArray<int32> Places;
	// A search that starts at the very end would begin before it.
	for (int32 From = 0; From < Text.Len();)
	{
		const int32 Place = Text.Find(*OldString, ESearchCase::CaseSensitive, ESearchDir::FromStart, From);
		if (Place == INDEX_NONE)
		{
			break;
		}
		Places.Add(Place);
		From = Place + OldLength;
	}
	if (Places.IsEmpty())
	{
		return 0;
	}
	OutAfter.Empty(Text.Len() + Places.Num() * (NewLength - OldLength));
	int32 Done = 0;
	for (const int32 Place : Places)
	{
		OutAfter.AppendChars(*Text + Done, Place - Done);
		OutAfter.AppendChars(*NewString, NewLength);
		Done = Place + OldLength;
	}
	OutAfter.AppendChars(*Text + Done, Text.Len() - Done);
	return Places.Num();
}

int32 ReplaceTolerantly(const FString& Text, const FString& OldString, const FString& NewString, FString& OutAfter)
{
	if (Holds(Text, *OldString))
	{
		return ReplaceInto(Text, OldString, NewString, OutAfter);
	}
	int32 Count = ReplaceInto(Text, AdaptTabs(AdaptLineEnds(OldString, Text), Text), NewString, OutAfter);
	Count = Count > 0 ? Count : ReplaceInto(Text, AdaptLineEnds(OldString, Text), NewString, OutAfter);
	return Count > 0 ? Count : ReplaceInto(Text, AdaptTabs(OldString, Text), NewString, OutAfter);
}

TArray<FString> SplitIntoLines(const FString& Text)
{
	TArray<FString> Lines;
	constexpr bool bCullEmpty = false;
	Text.ParseIntoArrayLines(Lines, bCullEmpty);
	if (!Lines.IsEmpty() && Lines.Last().IsEmpty())
	{
		Lines.Pop(); // what follows the last line ending is no line
	}
	return Lines;
}

FString JoinLines(const TArray<FString>& Lines)
{
	return Lines.IsEmpty() ? FString() : FString::Join(Lines, LINE_TERMINATOR) + LINE_TERMINATOR;
}
}

const TCHAR* const FFileUtils::BytesAreNoText = TEXT("File holds bytes that are no text, and editing would lose them");

bool FFileUtils::IsError(const FString& ResultText)
{
	return ResultText.StartsWith(TEXT("Error:"), ESearchCase::IgnoreCase);
}

bool FFileUtils::IsSavedAsUtf16(const FString& Text)
{
	constexpr TCHAR AsciiEnd = 0x80;
	if (FileEdits::GetEncodingOfNewText() == FileEdits::Utf8)
	{
		return false;
	}
	for (const TCHAR Character : Text)
	{
		if (Character >= AsciiEnd)
		{
			return true;
		}
	}
	return false;
}

FString FFileUtils::CreateNewFileWithContent(const FString& Path, const FString& Content)
{
	const FString FullPath = ToAbsolutePath(Path);
	const FString Folder = FPaths::GetPath(FullPath);
	if (!FPaths::DirectoryExists(Folder) && !FPlatformFileManager::Get().GetPlatformFile().CreateDirectoryTree(*Folder))
	{
		return MakeError(TEXT("Failed to create directory"), Folder);
	}
	return FileEdits::Create(FullPath,
		[&]() { return FFileHelper::SaveStringToFile(Content, *FullPath, FileEdits::GetEncodingOfNewText()); });
}

FString FFileUtils::WriteBytes(const FString& Path, const TArray<uint8>& Bytes)
{
	const FString FullPath = ToAbsolutePath(Path);
	const auto Write = [&]() { return FFileHelper::SaveArrayToFile(Bytes, *FullPath); };
	if (!FPaths::FileExists(FullPath))
	{
		const FString Folder = FPaths::GetPath(FullPath);
		return FPlatformFileManager::Get().GetPlatformFile().CreateDirectoryTree(*Folder)
				   ? FileEdits::Create(FullPath, Write)
				   : MakeError(TEXT("Failed to create directory"), Folder);
	}
	CheckoutFileFromSourceControl(FullPath);
	const FString Error = FileEdits::Rewrite(FullPath, TEXT("Failed to write new content to file"), Write);
	return Error.IsEmpty() ? FString::Printf(TEXT("Successfully replaced file: %s"), *FullPath) : Error;
}

FString FFileUtils::UpdateFile(const FString& Path, const FString& OldString, const FString& NewString,
	FString& OutContentBefore, FString& OutContentAfter)
{
	const FString FullPath = ToAbsolutePath(Path);
	const FString LoadError = FileEdits::LoadForEdit(FullPath, OutContentBefore);
	if (!LoadError.IsEmpty())
	{
		return LoadError;
	}
	int32 NumReplacements = 0;
	const FString Error =
		ReplaceInText(FullPath, OutContentBefore, OldString, NewString, OutContentAfter, NumReplacements);
	if (Error.IsEmpty())
	{
		return WriteUpdatedText(FullPath, OutContentAfter, NumReplacements);
	}
	if (FileEdits::HoldsNormalized(OutContentBefore, OldString))
	{
		CheckoutFileFromSourceControl(FullPath); // it was as good as found
	}
	return Error;
}

FString FFileUtils::ReplaceInText(const FString& FullPath, const FString& Text, const FString& OldString,
	const FString& NewString, FString& OutAfter, int32& OutNumReplacements)
{
	OutNumReplacements = 0;
	if (!FileEdits::HoldsNormalized(Text, OldString))
	{
		OutAfter = Text;
		return MakeError(TEXT("String not found in file"), FullPath);
	}
	OutNumReplacements = FileEdits::ReplaceTolerantly(Text, OldString, NewString, OutAfter);
	if (OutNumReplacements == 0)
	{
		OutAfter = Text;
		return MakeError(TEXT("No replacements made in file"), FullPath);
	}
	return FString();
}

FString FFileUtils::WriteUpdatedText(const FString& FullPath, const FString& After, int32 NumReplacements)
{
	CheckoutFileFromSourceControl(FullPath);
	const FString WriteError = FileEdits::RewriteText(FullPath, After);
	return WriteError.IsEmpty()
			   ? FString::Printf(TEXT("Successfully updated file: %s with %d replacements"), *FullPath, NumReplacements)
			   : WriteError;
}

FString FFileUtils::InsertIntoText(const FString& Text, int32 LineIndex, const FString& NewLine, int32& OutPosition)
{
	TArray<FString> Lines = FileEdits::SplitIntoLines(Text);
	OutPosition = FMath::Clamp(LineIndex, 0, Lines.Num());
	Lines.Insert(NewLine, OutPosition);
	return FileEdits::JoinLines(Lines);
}

FString FFileUtils::InsertIntoFile(const FString& Path, int32 LineIndex, const FString& Text)
{
	const FString FullPath = ToAbsolutePath(Path);
	FString Before;
	const FString LoadError = FileEdits::LoadForEdit(FullPath, Before);
	if (!LoadError.IsEmpty())
	{
		return LoadError;
	}
	int32 Position = 0;
	const FString After = InsertIntoText(Before, LineIndex, Text, Position);
	return WriteInsertedText(FullPath, After, Position);
}

FString FFileUtils::WriteInsertedText(const FString& FullPath, const FString& After, int32 Position)
{
	CheckoutFileFromSourceControl(FullPath);
	const FString WriteError = FileEdits::RewriteLines(FullPath, After);
	return WriteError.IsEmpty()
			   ? FString::Printf(TEXT("Successfully inserted text at line %d in file: %s"), Position, *FullPath)
			   : WriteError;
}

void FFileUtils::ReplaceLineInFile(const FString& Path, int32 LineNumber, const FString& NewLine)
{
	const FString FullPath = ToAbsolutePath(Path);
	FString Text;
	if (!FileEdits::LoadForEdit(FullPath, Text).IsEmpty())
	{
		return;
	}
	TArray<FString> Lines = FileEdits::SplitIntoLines(Text);
	if (LineNumber < 1 || LineNumber > Lines.Num())
	{
		return;
	}
	Lines[LineNumber - 1] = NewLine;
	CheckoutFileFromSourceControl(FullPath);
	FileEdits::RewriteLines(FullPath, FileEdits::JoinLines(Lines));
}

FString FFileUtils::ReplaceFile(const FString& Path, const FString& NewContent)
{
	const FString FullPath = ToAbsolutePath(Path);
	if (!FPaths::FileExists(FullPath))
	{
		return MakeError(TEXT("File does not exist"), FullPath);
	}
	CheckoutFileFromSourceControl(FullPath);
	const FString WriteError = FileEdits::RewriteText(FullPath, NewContent);
	return WriteError.IsEmpty() ? FString::Printf(TEXT("Successfully replaced file: %s"), *FullPath) : WriteError;
}

FString FFileUtils::DeleteFile(const FString& Path)
{
	const FString FullPath = ToAbsolutePath(Path);
	// Asked first: a provider's removal takes the file away itself.
	const bool bExisted = FPaths::FileExists(FullPath);
	RemoveFileFromSourceControl(FullPath, false);
	if (!bExisted)
	{
		return MakeError(TEXT("File does not exist at path"), FullPath);
	}
	if (FPaths::FileExists(FullPath) && !FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*FullPath))
	{
		return MakeError(TEXT("Failed to delete file"), FullPath);
	}
	return FString::Printf(TEXT("Successfully deleted file: %s"), *FullPath);
}
