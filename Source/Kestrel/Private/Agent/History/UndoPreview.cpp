#include "Agent/History/UndoPreview.h"

#include "Agent/Files/FileUtils.h"
#include "Agent/History/FileSnapshot.h"
#include "Agent/History/TransactionLookup.h"
#include "Agent/History/VersionsOfOthers.h"
#include "Agent/Text/DisplayText.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Editor/Transactor.h"
#include "Misc/Paths.h"
#include "UObject/ObjectPtr.h"

#define LOCTEXT_NAMESPACE "KestrelUndoPreview"

namespace UndoPreview
{
/** Whether a file is not yet as the step would leave it. */
bool Changes(const FString& FullPath, const FFileHistoryEntry& Entry, bool bIsUndo)
{
	const FKestrelFileSnapshot Then =
		bIsUndo ? FKestrelFileSnapshot::BeforeChange(Entry) : FKestrelFileSnapshot::AfterChange(Entry);
	return FKestrelFileSnapshot::OnDisk(FullPath).ActionTo(Then) != EFileActionType::None;
}

/** The first of some names, and how many there are besides. */
FText List(const TArray<FString>& Names)
{
	constexpr int32 MaxShown = 5;
	constexpr int32 MaxLength = 100; // of a name
	TArray<FString> Shown;
	for (int32 Index = 0; Index < FMath::Min(Names.Num(), MaxShown); ++Index)
	{
		Shown.Add(KestrelDisplayText::Elide(KestrelDisplayText::EscapeLine(Names[Index]), MaxLength));
	}
	const FText Listed = FText::FromString(FString::Join(Shown, TEXT(", ")));
	return Names.Num() <= MaxShown
			   ? Listed
			   : FText::Format(LOCTEXT("AndMore", "{0} and {1} more"), Listed, Names.Num() - MaxShown);
}
}

FKestrelUndoPreview FKestrelUndoPreview::OfUndo(const FString& Id, int32 MaxFiles)
{
	FKestrelUndoPreview Preview;
	Preview.LookAtFiles(FFileHistory::Get().GetFileHistories(), Id, MaxFiles);
	Preview.LookAtSteps(Id);
	return Preview;
}

FKestrelUndoPreview FKestrelUndoPreview::OfRedo(const FString& Id, int32 MaxFiles)
{
	FKestrelUndoPreview Preview;
	Preview.LookAtFiles(FFileHistory::Get().GetRedoHistories(), Id, MaxFiles);
	return Preview;
}

void FKestrelUndoPreview::LookAtFiles(const FFileHistory::FHistories& Histories, const FString& Id, int32 MaxFiles)
{
	const bool bIsUndo = &Histories == &FFileHistory::Get().GetFileHistories();
	const FFileHistory::FFileEntries* Entries = Histories.Find(Id);
	NumFiles = Entries ? Entries->Num() : 0;
	if (!Entries || NumFiles > MaxFiles)
	{
		return;
	}
	for (const auto& Pair : *Entries)
	{
		const FString FullPath = FFileUtils::ToAbsolutePath(Pair.Key);
		if (KestrelVersionsOfOthers::IsChangedSince(FullPath, Pair.Value.Left) &&
			UndoPreview::Changes(FullPath, Pair.Value, bIsUndo))
		{
			FString Shown = FullPath;
			FPaths::MakePathRelativeTo(Shown, *FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()));
			FilesOfOthers.Add(Shown);
		}
	}
	FilesOfOthers.Sort();
}

void FKestrelUndoPreview::LookAtSteps(const FString& Id)
{
	const UTransactor* Transactor = GEditor ? GEditor->Trans.Get() : nullptr;
	const FString Name = GetKestrelTransactionName(Id);
	const int32 First = Transactor && !Id.IsEmpty() ? FKestrelTransactionLookup::Find(Name) : INDEX_NONE;
	if (First == INDEX_NONE)
	{
		return;
	}
	for (int32 Index = Transactor->GetQueueLength() - Transactor->GetUndoCount() - 1; Index >= First; --Index)
	{
		const FTransaction* Transaction = Transactor->GetTransaction(Index);
		const FString Title = Transaction ? Transaction->GetTitle().ToString() : FString();
		if (Title.Equals(Name))
		{
			++NumSteps;
		}
		else
		{
			OtherSteps.Add(Title);
		}
	}
}

FText FKestrelUndoPreview::DescribeCounts(int32 Files, int32 Steps)
{
	const FText FilesText = FText::Format(LOCTEXT("Files", "{0} {0}|plural(one=file,other=files)"), Files);
	const FText StepsText =
		FText::Format(LOCTEXT("Steps", "{0} {0}|plural(one=step in the editor,other=steps in the editor)"), Steps);
	if (Files == 0 || Steps == 0)
	{
		return Steps == 0 ? FilesText : StepsText;
	}
	return FText::Format(LOCTEXT("FilesAndSteps", "{0}, {1}"), FilesText, StepsText);
}

FText FKestrelUndoPreview::DescribeOthers() const
{
	TArray<FString> Sentences;
	if (!OtherSteps.IsEmpty())
	{
		Sentences.Add(
			FText::Format(LOCTEXT("OtherSteps", "{0} later {0}|plural(one=step,other=steps) in the editor that you or "
												"others made {0}|plural(one=goes,other=go) with them: {1}."),
				OtherSteps.Num(), UndoPreview::List(OtherSteps))
				.ToString());
	}
	if (!FilesOfOthers.IsEmpty())
	{
		Sentences.Add(FText::Format(
			LOCTEXT("FilesOfOthers",
				"{0} {0}|plural(one=file has,other=files have) been changed since, and {0}|plural(one=goes,"
				"other=go) back as well; a copy is kept: {1}."),
			FilesOfOthers.Num(), UndoPreview::List(FilesOfOthers))
						  .ToString());
	}
	return FText::FromString(FString::Join(Sentences, TEXT(" ")));
}

#undef LOCTEXT_NAMESPACE
