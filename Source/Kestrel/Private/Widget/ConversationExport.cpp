#include "Widget/ConversationExport.h"

#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Text/DisplayText.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Widget/LineDiff.h"

#define LOCTEXT_NAMESPACE "KestrelConversationExport"

namespace ConversationExport
{
/** Unchanged lines that are shown before and after changed ones. */
constexpr int32 NumLinesAround = 3;

/** As Markdown quotes it: each line behind a mark. */
FString Quote(const FString& Text)
{
	return TEXT("> ") + Text.TrimStartAndEnd().Replace(TEXT("\n"), TEXT("\n> ")) + TEXT("\n\n");
}

/** A row of backticks that is longer than any in the text, so that the text cannot end its block. */
FString MakeFence(const FString& Text)
{
	int32 Longest = 2;
	int32 Length = 0;
	for (const TCHAR Character : Text)
	{
		Length = Character == TEXT('`') ? Length + 1 : 0;
		Longest = FMath::Max(Longest, Length);
	}
	return FString::ChrN(Longest + 1, TEXT('`'));
}

FString StatusToMarkdown(const FKestrelTranscriptEntry& Entry)
{
	const FString Begin = TEXT(" [ ");
	const FString End = TEXT(" ]");
	int32 EndIndex = INDEX_NONE;
	if (Entry.Text.StartsWith(Begin, ESearchCase::CaseSensitive))
	{
		EndIndex = Entry.Text.Find(End, ESearchCase::CaseSensitive, ESearchDir::FromStart, Begin.Len());
	}
	if (EndIndex == INDEX_NONE)
	{
		return Quote(Entry.Text);
	}
	const FString Speaker = Entry.Text.Mid(Begin.Len(), EndIndex - Begin.Len());
	const FString Said = Entry.Text.Mid(EndIndex + End.Len()).TrimStartAndEnd();
	return FString::Printf(TEXT("## %s\n\n"), *KestrelDisplayText::EscapeLine(Speaker)) +
		   (Said.IsEmpty() ? FString() : Said + TEXT("\n\n"));
}

/** Which lines are changed, or near to changed ones. */
TArray<bool> FindShownLines(const TArray<FDiffLine>& Lines)
{
	TArray<bool> Shown;
	Shown.Init(false, Lines.Num());
	for (int32 Index = 0; Index < Lines.Num(); ++Index)
	{
		if (Lines[Index].Type == EDiffLineType::Unchanged)
		{
			continue;
		}
		const int32 Last = FMath::Min(Index + NumLinesAround, Lines.Num() - 1);
		for (int32 Near = FMath::Max(Index - NumLinesAround, 0); Near <= Last; ++Near)
		{
			Shown[Near] = true;
		}
	}
	return Shown;
}

FString CompareTexts(const FString& Before, const FString& After)
{
	const TArray<FDiffLine> Lines =
		KestrelLineDiff::Compare(KestrelLineDiff::SplitIntoLines(Before), KestrelLineDiff::SplitIntoLines(After));
	const TArray<bool> Shown = FindShownLines(Lines);
	FString Text;
	bool bLeftOut = false;
	for (int32 Index = 0; Index < Lines.Num(); ++Index)
	{
		if (!Shown[Index])
		{
			bLeftOut = true;
			continue;
		}
		const FDiffLine& Line = Lines[Index];
		if (bLeftOut)
		{
			Text += FString::Printf(
				TEXT("@@ -%d +%d @@\n"), FMath::Max(Line.OldLineNumber, 1), FMath::Max(Line.NewLineNumber, 1));
			bLeftOut = false;
		}
		const TCHAR* const Sign = Line.Type == EDiffLineType::Added     ? TEXT("+")
								  : Line.Type == EDiffLineType::Removed ? TEXT("-")
																		: TEXT(" ");
		Text += Sign + Line.Content + TEXT("\n");
	}
	return Text;
}

FString ChangeToMarkdown(const FKestrelTranscriptEntry& Entry)
{
	const FString Heading = FString::Printf(TEXT("### %s\n\n"), *KestrelDisplayText::EscapeLine(Entry.Text));
	if (Entry.bTextsLeftOut || !KestrelDisplayText::IsWorthComparing(Entry.Before, Entry.After))
	{
		return Heading + Quote(LOCTEXT("TooLarge", "The change is too large to be shown.").ToString());
	}
	const FString Lines = CompareTexts(Entry.Before, Entry.After);
	const FString Fence = MakeFence(Lines);
	return Heading + Fence + TEXT("diff\n") + Lines + Fence + TEXT("\n\n");
}

/** A name that every system takes, whatever the title is. */
FString MakeFileName(const FString& Title)
{
	constexpr int32 MaxLength = 40;
	FString Name;
	for (const TCHAR Character : Title)
	{
		const bool bPlain = (Character >= TEXT('a') && Character <= TEXT('z')) ||
							(Character >= TEXT('A') && Character <= TEXT('Z')) ||
							(Character >= TEXT('0') && Character <= TEXT('9'));
		if (bPlain)
		{
			Name.AppendChar(Character);
		}
		else if (!Name.IsEmpty() && !Name.EndsWith(TEXT("-")))
		{
			Name.AppendChar(TEXT('-'));
		}
	}
	Name = Name.Left(MaxLength);
	Name.RemoveFromEnd(TEXT("-"));
	const FString Time = FDateTime::Now().ToString(TEXT("%Y-%m-%d-%H%M%S"));
	return (Name.IsEmpty() ? FString(TEXT("Conversation")) : Name) + TEXT("-") + Time;
}
}

FString KestrelConversationExport::ToMarkdown(const FString& Title, const TArray<FKestrelTranscriptEntry>& Entries)
{
	FString Text = FString::Printf(TEXT("# %s\n\n"), *Title);
	FString Last;
	for (const FKestrelTranscriptEntry& Entry : Entries)
	{
		FString Part = Entry.Kind == EKestrelTranscriptKind::Change   ? ConversationExport::ChangeToMarkdown(Entry)
					   : Entry.Kind == EKestrelTranscriptKind::Status ? ConversationExport::StatusToMarkdown(Entry)
																	  : ConversationExport::Quote(Entry.Text);
		// Nobody wants to read how often it has polled.
		if (!Part.Equals(Last))
		{
			Text += Part;
			Last = MoveTemp(Part);
		}
	}
	return Text;
}

FString KestrelConversationExport::Write(
	const FString& Folder, const FKestrelConversationInfo& Info, const TArray<FKestrelTranscriptEntry>& Entries)
{
	constexpr int32 MaxTries = 100;
	const bool bOurs =
		KestrelNativeFile::IsReachedWithoutLinks(Folder, FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()));
	if (!bOurs || !FPlatformFileManager::Get().GetPlatformFile().CreateDirectoryTree(*Folder))
	{
		return FString();
	}
	KestrelNativeFile::RestrictToOwner(Folder);
	const FString Name = ConversationExport::MakeFileName(Info.Title);
	FString File = Folder / Name + TEXT(".md");
	for (int32 Try = 2; Try < MaxTries && FPaths::FileExists(File); ++Try)
	{
		File = Folder / FString::Printf(TEXT("%s-%d.md"), *Name, Try);
	}
	if (FPaths::FileExists(File) || KestrelNativeFile::IsDanglingLink(File) ||
		!FFileHelper::SaveStringToFile(
			ToMarkdown(Info.Title, Entries), *File, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM))
	{
		return FString();
	}
	KestrelNativeFile::RestrictToOwner(File);
	return File;
}

#undef LOCTEXT_NAMESPACE
