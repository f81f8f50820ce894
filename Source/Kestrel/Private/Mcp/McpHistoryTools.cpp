#include "Mcp/McpHistoryTools.h"

#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/History/TransactionLookup.h"
#include "Agent/History/UndoPreview.h"
#include "Agent/Tools/ToolPlan.h"

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

/** What the files of a history are to the rules, and to the person who is asked. */
void AddFiles(const FFileHistory::FFileEntries& Entries, FKestrelToolPlan& Plan)
{
	TArray<FString> Paths;
	Entries.GenerateKeyArray(Paths);
	Plan.Target = FString::Join(Paths, TEXT(", "));
	FKestrelProjectView View(EKestrelLookAhead::Limited);
	for (const FString& Path : Paths)
	{
		Plan.AddFile(View, FFileUtils::ToAbsolutePath(Path));
	}
}

void CautionOfOthers(const FKestrelUndoPreview& Touched, FKestrelToolPlan& Plan)
{
	if (Touched.TouchesOthers())
	{
		Plan.Caution(Touched.DescribeOthers());
	}
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
	if (Entries)
	{
		AddFiles(*Entries, Plan);
	}
	// The editor does not tell which assets a step of its list has changed.
	Plan.bHasUnknownPlaces = bHasSteps;
	CautionOfOthers(FKestrelUndoPreview::OfUndo(ConversationId), Plan);
}

void PlanRedo(const FString& ConversationId, FKestrelToolPlan& Plan)
{
	const FFileHistory::FFileEntries* Entries = FFileHistory::Get().GetRedoHistories().Find(ConversationId);
	if (!Entries)
	{
		Plan.Refuse(TEXT("Error: There is nothing to redo."));
		return;
	}
	AddFiles(*Entries, Plan);
	CautionOfOthers(FKestrelUndoPreview::OfRedo(ConversationId), Plan);
}
}

const TArray<FKestrelTool>& KestrelMcpHistoryTools::GetAll()
{
	static const TArray<FKestrelTool> Tools = {
		{ TEXT("undo_changes"), EKestrelToolKind::Change, LOCTEXT("UndoVerb", "Undo everything that it has changed:"),
			TEXT("Reverts everything that this client has changed since it connected."), {}, nullptr, nullptr,
			EKestrelNameInPanel::Shown, nullptr, McpHistoryTools::ApplyUndo },
		{ TEXT("redo_changes"), EKestrelToolKind::Change, LOCTEXT("RedoVerb", "Redo what it has undone:"),
			TEXT("Makes the file changes again that undo_changes has reverted."), {}, nullptr, nullptr,
			EKestrelNameInPanel::Shown, nullptr, McpHistoryTools::ApplyRedo },
	};
	return Tools;
}

bool KestrelMcpHistoryTools::IsOne(const FKestrelTool& Tool)
{
	return GetAll().ContainsByPredicate([&Tool](const FKestrelTool& Each) { return &Each == &Tool; });
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

#undef LOCTEXT_NAMESPACE
