#include "Agent/Agent.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/History/UndoPreview.h"
#include "Agent/Text/DisplayText.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Editor/Transactor.h"
#include "UObject/ObjectPtr.h"

#define LOCTEXT_NAMESPACE "FKestrelInterface"

namespace KestrelInterfaceUndo
{
const TCHAR* const UndoLabel = TEXT("Undo");
const TCHAR* const RedoLabel = TEXT("Redo");

int32 CountFiles(const FFileHistory::FHistories& Histories, const FString& Id)
{
	const FFileHistory::FFileEntries* Entries = Histories.Find(Id);
	return Entries ? Entries->Num() : 0;
}
}

void FKestrelInterface::UndoLastOperation()
{
	AddOwnStatusMessage(TEXT("Undoing Last Changes..."));
	if (!CanUndo())
	{
		AddHint(LOCTEXT("NothingToUndo", "There is nothing to undo."));
		return; // what could be made again still can
	}
	FAgent& Agent = FAgent::Get();
	const FString Id = Agent.GetUndoConversationID();
	const int32 NumFilesBefore = KestrelInterfaceUndo::CountFiles(FFileHistory::Get().GetRedoHistories(), Id);
	const int32 NumOtherSteps = PreviewUndo(0).OtherSteps.Num();
	int32 NumStepsUndone = 0;
	// Each of the conversation's tools has opened one.
	while (UndoUntilLastTransactionByName(GetKestrelTransactionName(Id)))
	{
		++NumStepsUndone;
	}
	const bool bEditorUndone = NumStepsUndone > 0;
	if (FFileHistory::Get().UndoAllChanges(Id))
	{
		Agent.TriggerCompilationWithMessages(KestrelInterfaceUndo::UndoLabel, Agent.GetStoredMessages());
	}
	// What was undone has moved to the other side; the rest of the records had nothing to undo.
	const int32 NumFilesUndone =
		KestrelInterfaceUndo::CountFiles(FFileHistory::Get().GetRedoHistories(), Id) - NumFilesBefore;
	const bool bAllDone = ReportLeftChanges(FFileHistory::Get().GetFileHistories().Find(Id));
	// What was undone in the editor is not made again, and half of a conversation's changes shall not be either.
	if (bEditorUndone)
	{
		FFileHistory::Get().ForgetRedo(Id);
	}
	Agent.SetRedoConversationID(bEditorUndone ? FString() : Id);
	Agent.SetUndoConversationID(bAllDone ? FString() : Id);
	if (bEditorUndone)
	{
		// Saving comes first there, and would put what the old classes still have into the files.
		FKestrelBlueprintUtils::CompileDirtyBlueprints();
		FKestrelBlueprintUtils::SaveAndCompileAllDirtyBlueprints();
	}
	AddHint(FText::Format(
		LOCTEXT("Undone", "Undone: {0}."), FKestrelUndoPreview::DescribeCounts(NumFilesUndone, NumStepsUndone)));
	if (bEditorUndone && NumOtherSteps > 0)
	{
		AddHint(FText::Format(
			LOCTEXT("UndoneOthers", "With them {0} later {0}|plural(one=step,other=steps) of others."), NumOtherSteps));
	}
}

void FKestrelInterface::UndoConversation(const FString& Id)
{
	FAgent::Get().SetUndoConversationID(Id);
	UndoLastOperation();
}

void FKestrelInterface::RedoConversation(const FString& Id)
{
	FAgent::Get().SetRedoConversationID(Id);
	RedoLastOperation();
}

bool FKestrelInterface::CanUndoConversation(const FString& Id) const
{
	return !Id.IsEmpty() && (FFileHistory::Get().GetFileHistories().Contains(Id) || EarlierLookup.Contains(Id));
}

bool FKestrelInterface::CanRedoConversation(const FString& Id) const
{
	return FFileHistory::Get().GetRedoHistories().Contains(Id);
}

bool FKestrelInterface::UndoUntilLastTransactionByName(const FString& Name) const
{
	UTransactor* Transactor = GEditor ? GEditor->Trans.Get() : nullptr;
	if (!Transactor)
	{
		return false;
	}
	// One that the user has undone by hand is gone: looking for it would undo everything else.
	const int32 Index = FKestrelTransactionLookup::Find(Name);
	if (Index == INDEX_NONE || Index >= Transactor->GetQueueLength() - Transactor->GetUndoCount())
	{
		return false;
	}
	while (Transactor->CanUndo())
	{
		const bool bNamed = Transactor->GetUndoContext(false).Title.ToString().Equals(Name);
		if (!GEditor->UndoTransaction())
		{
			return false;
		}
		if (bNamed)
		{
			return true;
		}
	}
	return false;
}

void FKestrelInterface::RedoLastOperation()
{
	AddOwnStatusMessage(TEXT("Redoing Last Changes..."));
	if (!CanRedo())
	{
		AddHint(LOCTEXT("NothingToRedo", "There is nothing to redo."));
		return;
	}
	FAgent& Agent = FAgent::Get();
	const FString Id = Agent.GetRedoConversationID();
	const int32 NumFilesBefore = KestrelInterfaceUndo::CountFiles(FFileHistory::Get().GetFileHistories(), Id);
	if (FFileHistory::Get().RedoAllChanges(Id))
	{
		Agent.TriggerCompilationWithMessages(KestrelInterfaceUndo::RedoLabel, Agent.GetStoredMessages());
	}
	const bool bAllDone = ReportLeftChanges(FFileHistory::Get().GetRedoHistories().Find(Id));
	Agent.SetUndoConversationID(Id);
	Agent.SetRedoConversationID(bAllDone ? FString() : Id);
	const int32 NumFilesRedone =
		KestrelInterfaceUndo::CountFiles(FFileHistory::Get().GetFileHistories(), Id) - NumFilesBefore;
	AddHint(FText::Format(LOCTEXT("Redone", "Redone: {0} {0}|plural(one=file,other=files)."), NumFilesRedone));
}

bool FKestrelInterface::ReportLeftChanges(const FFileHistory::FFileEntries* Left) const
{
	if (!Left)
	{
		return true;
	}
	for (const auto& Pair : *Left)
	{
		AddOwnStatusMessage(
			FString::Printf(TEXT("This file could not be written: %s"), *KestrelDisplayText::EscapeLine(Pair.Key)));
	}
	return false;
}

bool FKestrelInterface::IsCompileLabel(const FString& ToolId)
{
	return ToolId.Equals(KestrelInterfaceUndo::UndoLabel) || ToolId.Equals(KestrelInterfaceUndo::RedoLabel);
}

FKestrelUndoPreview FKestrelInterface::PreviewUndo(int32 MaxFiles) const
{
	return FKestrelUndoPreview::OfUndo(FAgent::Get().GetUndoConversationID(), MaxFiles);
}

FKestrelUndoPreview FKestrelInterface::PreviewRedo(int32 MaxFiles) const
{
	return FKestrelUndoPreview::OfRedo(FAgent::Get().GetRedoConversationID(), MaxFiles);
}

bool FKestrelInterface::CanUndo() const
{
	const FString& Id = FAgent::Get().GetUndoConversationID();
	return !Id.IsEmpty() && (FFileHistory::Get().GetFileHistories().Contains(Id) || UndoLookup.Contains(Id));
}

bool FKestrelInterface::CanRedo() const
{
	const FString& Id = FAgent::Get().GetRedoConversationID();
	return !Id.IsEmpty() && (FFileHistory::Get().GetRedoHistories().Contains(Id) || RedoLookup.Contains(Id));
}

#undef LOCTEXT_NAMESPACE
