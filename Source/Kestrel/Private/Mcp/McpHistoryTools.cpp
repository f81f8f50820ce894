#include "Mcp/McpHistoryTools.h"

#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/PathReview.h"
#include "Agent/History/TransactionLookup.h"
#include "Agent/History/VersionsOfOthers.h"
#include "Agent/Text/DisplayText.h"
#include "Agent/Tools/ToolPlan.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Editor/Transactor.h"
#include "Mcp/McpTools.h"
#include "UObject/ObjectPtr.h"

#define LOCTEXT_NAMESPACE "KestrelMcpHistory"

namespace McpHistoryTools
{
FString ApplyUndo(const FKestrelToolPlan&)
{
	FAgent::Get().OfferUndoOfThisConversation();
	FKestrelInterface::Get().UndoLastOperation();
	return FString();
}

FString ApplyRedo(const FKestrelToolPlan&)
{
	FAgent::Get().SetRedoConversationID(FAgent::Get().GetConversationId());
	FKestrelInterface::Get().RedoLastOperation();
	return FString();
}

/** Steps in the editor that others have taken since: undoing the conversation's own undoes them first. */
int32 CountLaterStepsOfOthers(const FString& ConversationId)
{
	const FString Name = GetKestrelTransactionName(ConversationId);
	UTransactor* Transactor = GEditor ? GEditor->Trans.Get() : nullptr;
	const int32 First = Transactor ? FKestrelTransactionLookup::Find(Name) : INDEX_NONE;
	if (First == INDEX_NONE)
	{
		return 0;
	}
	int32 NumSteps = 0;
	for (int32 Index = First; Index < Transactor->GetQueueLength() - Transactor->GetUndoCount(); ++Index)
	{
		const FTransaction* Step = Transactor->GetTransaction(Index);
		NumSteps += Step && !Step->GetTitle().ToString().Equals(Name);
	}
	return NumSteps;
}

FString ShowPaths(const TArray<FString>& Paths)
{
	TArray<FString> Shown;
	for (const FString& Path : Paths)
	{
		Shown.Add(FKestrelPathReview::Of(FFileUtils::ToAbsolutePath(Path)).ShownPath);
	}
	return KestrelDisplayText::EscapeLine(FString::Join(Shown, TEXT(", ")));
}

void PlanUndo(const FString& ConversationId, FKestrelToolPlan& Plan)
{
	const FFileHistory::FFileEntries* Entries = FFileHistory::Get().GetFileHistories().Find(ConversationId);
	const bool bHasSteps = FKestrelTransactionLookup::Find(GetKestrelTransactionName(ConversationId)) != INDEX_NONE;
	if (!Entries && !bHasSteps)
	{
		Plan.Refuse(TEXT("Error: There is nothing to undo."));
		return;
	}
	TArray<FString> Paths;
	if (Entries)
	{
		Entries->GenerateKeyArray(Paths);
	}
	Plan.Target = FString::Join(Paths, TEXT(", "));
	const TArray<FString> ByOthers = KestrelMcpHistoryTools::FindChangedByOthers(ConversationId);
	if (!ByOthers.IsEmpty())
	{
		Plan.Caution(FText::Format(
			LOCTEXT("ChangedByOthers", "also takes away what others have written to {0} since; a copy of it is kept"),
			FText::FromString(ShowPaths(ByOthers))));
	}
	const int32 NumSteps = CountLaterStepsOfOthers(ConversationId);
	if (NumSteps > 0)
	{
		Plan.Caution(FText::Format(
			LOCTEXT("StepsOfOthers", "also undoes {0} later {0}|plural(one=step,other=steps) of others in the editor"),
			NumSteps));
	}
}

void PlanRedo(const FString& ConversationId, FKestrelToolPlan& Plan)
{
	const FFileHistory::FFileEntries* Entries = FFileHistory::Get().GetRedoHistories().Find(ConversationId);
	if (!Entries)
	{
		Plan.Refuse(TEXT("Error: There is nothing to redo."));
		return;
	}
	TArray<FString> Paths;
	Entries->GenerateKeyArray(Paths);
	Plan.Target = FString::Join(Paths, TEXT(", "));
}
}

const TArray<FKestrelTool>& KestrelMcpHistoryTools::GetAll()
{
	static const TArray<FKestrelTool> Tools = {
		{ KestrelMcpTools::UndoChanges, EKestrelToolKind::Change,
			LOCTEXT("UndoVerb", "Undo everything that it has changed:"),
			TEXT("Reverts everything that this client has changed since it connected."), {}, nullptr, nullptr,
			EKestrelNameInPanel::Shown, nullptr, McpHistoryTools::ApplyUndo },
		{ KestrelMcpTools::RedoChanges, EKestrelToolKind::Change, LOCTEXT("RedoVerb", "Redo what it has undone:"),
			TEXT("Makes the file changes again that undo_changes has reverted."), {}, nullptr, nullptr,
			EKestrelNameInPanel::Shown, nullptr, McpHistoryTools::ApplyRedo },
	};
	return Tools;
}

TSharedRef<FKestrelToolPlan> KestrelMcpHistoryTools::Plan(
	const FKestrelTool& Tool, const FString& ConversationId, const FString& ToolUseId)
{
	const TSharedRef<FKestrelToolPlan> Plan = MakeShared<FKestrelToolPlan>();
	Plan->Tool = &Tool;
	Plan->ToolUseId = ToolUseId;
	Plan->Kind = Tool.Kind;
	Plan->Verb = Tool.Verb;
	const bool bUndo = Tool.Apply == McpHistoryTools::ApplyUndo;
	bUndo ? McpHistoryTools::PlanUndo(ConversationId, *Plan) : McpHistoryTools::PlanRedo(ConversationId, *Plan);
	return Plan;
}

TArray<FString> KestrelMcpHistoryTools::FindChangedByOthers(const FString& ConversationId)
{
	TArray<FString> Changed;
	const FFileHistory::FFileEntries* Entries = FFileHistory::Get().GetFileHistories().Find(ConversationId);
	if (!Entries)
	{
		return Changed;
	}
	for (const auto& Pair : *Entries)
	{
		const FKestrelFileMark Now = KestrelVersionsOfOthers::MarkOf(FFileUtils::ToAbsolutePath(Pair.Key));
		if (Pair.Value.Left.IsSet() && !Pair.Value.Left->IsSameAs(Now))
		{
			Changed.Add(Pair.Key);
		}
	}
	return Changed;
}

#undef LOCTEXT_NAMESPACE
