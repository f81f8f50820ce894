#pragma once

#include "Agent/KestrelAgentState.h"
#include "CoreMinimal.h"
#include "Delegates/IDelegateInstance.h"

class FJsonObject;
class FJsonValue;
class FKestrelPendingTools;
class FKestrelWorkRunner;
enum class EKestrelAnswer : uint8;
enum class EKestrelRuling : uint8;
struct FKestrelToolPlan;

/** A tool has run. Its result is the text that the service gets; one that begins with "Error:" is a failure. */
DECLARE_MULTICAST_DELEGATE_TwoParams(FOnKestrelToolDone, const FKestrelToolPlan& /*Plan*/, const FString& /*Result*/);

/**
 * Drives a conversation with the AI service: one at a time, on the game thread.
 *
 * Each change of course goes through SetAgentState. What it does on entering a state:
 *
 *   Idle             forgets the conversation id, the pause, the approval and the tools that wait; stops polling
 *   InitialRequest   shows the prompt, begins a new conversation, sends the prompt with the project's file tree
 *   RegularRequest   shows and sends a further prompt
 *   Continue         runs the tools that wait (or answers them as aborted, when the user wrote something instead),
 *                    and sends the results; asks again when a file is no longer as it was shown
 *   AwaitingUpdate   forgets the pause and the approval; the user may type
 *   Pause            says so
 *   CancelRequest    says why, then Idle
 *   EndRequest       says so, then Idle
 *
 * The others are told to the listeners only.
 */
class KESTREL_API FAgent
{
public:
	static FAgent& Get();
	~FAgent();
	UE_NONCOPYABLE(FAgent)

	/** Puts it into `Idle`. */
	void Initialize();

	/** Entering the present state again does nothing at all. Data may be null for a state that takes none. */
	void SetAgentState(EAgentState NewState, const FAgentStateData* Data);
	EAgentState GetAgentState() const { return State; }
	/** The state before; in `Idle` it says how the conversation came to its end. */
	EAgentState GetPreviousState() const { return PreviousState; }
	/** Broadcast after each change of state. */
	FSimpleMulticastDelegate& OnStateChanged() { return StateChanged; }
	/** Broadcast after each tool of an answer, before its result is sent. */
	FOnKestrelToolDone& OnToolDone() { return ToolDone; }

	/** A pause that begins is shown at once. */
	void SetPaused(bool bInPaused);
	bool WasPaused() const { return bPaused; }
	void SetApproved(bool bInApproved) { bApproved = bInApproved; }
	bool WasApproved() const { return bApproved; }

	/** Pauses after the answer in flight: its text is shown, its tools wait. Without a request nothing happens. */
	void PauseRequest();
	/** Goes on after a pause or an approval; with a message the waiting tools are aborted and the message goes instead.
	 */
	void Continue(const FString& Message);
	void EndRequest(const FString& Message);
	void CancelRequest(const FString& Message);

	void SetConversationId(const FString& Id) { ConversationId = Id; }
	const FString& GetConversationId() const { return ConversationId; }
	void ClearConversationId() { ConversationId.Empty(); }
	void SetUndoConversationID(const FString& Id) { UndoConversationId = Id; }
	const FString& GetUndoConversationID() const { return UndoConversationId; }
	void SetRedoConversationID(const FString& Id) { RedoConversationId = Id; }
	const FString& GetRedoConversationID() const { return RedoConversationId; }
	/** For a tool that is about to change something: Undo is for this conversation from now on. */
	void OfferUndoOfThisConversation() { SetUndoConversationID(ConversationId); }

	/** The conversation's message objects, in order. */
	void AddStoredMessage(const TSharedPtr<FJsonObject>& Message) { StoredMessages.Add(Message); }
	const TArray<TSharedPtr<FJsonObject>>& GetStoredMessages() const { return StoredMessages; }
	/** The last answer, whole. */
	void SetStoredJsonBody(const TSharedPtr<FJsonObject>& Body) { StoredJsonBody = Body; }
	const TSharedPtr<FJsonObject>& GetStoredJsonBody() const { return StoredJsonBody; }
	/** The results that wait to be sent: a "tool_result" block each. */
	void AddToolResult(const TSharedPtr<FJsonObject>& Result);
	void AddToolResult(const FString& ToolUseId, const FString& Content, bool bIsError);
	const TArray<TSharedPtr<FJsonValue>>& GetToolResults() const { return ToolResults; }
	void ClearToolResults() { ToolResults.Empty(); }
	const FKestrelPendingTools& GetPendingTools() const { return *PendingTools; }
	/** Drops the tool at work, and those behind it; their results are not kept. Also for the module's shut-down. */
	void DropTurn();
	/** How far the tool at work is, 0 to 1, or less than 0 where that is not known; unset when none is. */
	TOptional<float> GetToolProgress() const;
	/**
	 * Accepts or rejects one of the tools that wait, or takes that back. When all are answered, the turn goes on:
	 * those that are not rejected run.
	 *
	 * @param Index  in GetPendingTools
	 */
	void AnswerPendingTool(int32 Index, EKestrelAnswer Answer);

	/** Runs the tool that a "tool_use" block names and keeps its result for the next request. */
	void HandleResponseToolUse(const TSharedPtr<FJsonObject>& Block);
	/** Answers a "tool_use" block without running anything, since the user wrote something instead. */
	void HandlePauseToolUse(const TSharedPtr<FJsonObject>& Block);
	/** @return the tool's result; a text that begins with "Error:" in any letter case is a failure */
	FString UseTool(const FString& Name, const FString& Id, const TSharedPtr<FJsonObject>& Input);

	// The tools one by one, as UseTool runs them.
	FString UseFinishTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseCompileTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseExecutePythonTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseCreateFileTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseCreateCPPTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseUpdateAndReplaceCPPTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseUpdateFileTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseInsertIntoFileTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseDeleteFileTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseDeleteCPPTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseReadTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseGetFileSystemTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseCreateBlueprintTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseReadBlueprintTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseModifyBlueprintTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseReadBehaviorTreeTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseSaveAndCompileAllDirtyBlueprintsTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);
	FString UseFindReferenceInAllFilesTool(const FString& Id, const TSharedPtr<FJsonObject>& Input);

	/**
	 * Compiles the game in the background. The result is told by OnCompilationFinished under the id of the tool use, or
	 * under another label when it was not a tool that asked.
	 */
	void TriggerCompilationWithMessages(const FString& ToolId, const TArray<TSharedPtr<FJsonObject>>& Messages);
	/** Whether the last compile is of the conversation in the panel: neither of an earlier one nor of another
	 * assistant. */
	bool IsCompileOfPanel() const;
	/**
	 * Keeps the result of a compile for the next request, and shows how it went. One that an earlier conversation asked
	 * for is shown only.
	 */
	void OnCompilationFinished(
		const TArray<TSharedPtr<FJsonObject>>& Messages, const FString& ToolId, const FString& Logs, bool bSuccess);

	// What the backend client reports.
	void HandleRegularRequest(const FString& Text, const FLinearColor& Color, const FName& FontStyle, float FontSize);
	void HandleRegularRequestFailed(const FString& Message);
	void HandlePollStatusRequestStarted();
	void HandlePollStatusRequestProcessing();
	void HandlePollStatusRequestFailed(const FString& Error);
	void HandlePollStatusRequestCompleted(const TSharedPtr<FJsonObject> Response);

private:
	struct FEntryAction;
	class FTurn;

	FAgent();

	static const TArray<FEntryAction>& GetEntryActions();
	void EnterIdle(const FString&);
	void EnterInitialRequest(const FString& Prompt);
	void EnterRegularRequest(const FString& Message);
	void EnterContinue(const FString& Message);
	void EnterAwaitingUpdate(const FString&);
	void EnterPause(const FString&);
	void EnterCancelRequest(const FString& Reason);
	void EnterEndRequest(const FString& Message);

	void StoreAnswer(const TSharedPtr<FJsonObject>& Response);
	void BeginTurn(const TSharedRef<FTurn>& NewTurn);
	/** @return true at the end of the turn */
	bool StepTurn(FTurn& InOutTurn, double Deadline);
	bool HandleNextBlock(FTurn& InOutTurn);
	void EndOfAnswer(FTurn& InOutTurn);
	/** Runs a tool that may, and keeps the others for the user. */
	void HandleToolUse(FTurn& InOutTurn, const FJsonObject& Block);
	void RunOrKeep(FTurn& InOutTurn, const TSharedRef<FKestrelToolPlan>& Plan);
	void FinishAnswerWithoutToolResults();
	bool RunNextApproved(FTurn& InOutTurn);
	/** Those that have not run wait again. */
	void KeepApproved(FTurn& InOutTurn);
	void EndOfApproved(FTurn& InOutTurn);
	void BeginTool(FTurn& InOutTurn, const TSharedRef<FKestrelToolPlan>& Plan);
	/** Keeps the result of the tool that is at its end. */
	void FinishTool(FTurn& InOutTurn);
	/** @return false when the turn has ended with it */
	bool KeepResult(const FKestrelToolPlan& Plan, const FString& Text);
	/** Answers a tool use without running anything. */
	void AbortTool(const FString& ToolUseId);
	/** Answers a tool use that a rule keeps from running, and says so. */
	void DenyTool(const FKestrelToolPlan& Plan);
	void AbortPendingTools();
	/** Whether the settings, or the service's word, are enough for a tool to run. */
	bool MayRunWithoutAsking(const FKestrelToolPlan& Plan, EKestrelRuling Ruling) const;
	void SendToolResults();
	void SendContinue(const FString& Message);
	/** Sends an object of the agent's own making, and forgets the tool results that it carried. */
	void SendAndClearToolResults(const TSharedRef<FJsonObject>& Body);
	bool MayActWithoutAsking() const;

	EAgentState State = EAgentState::None;
	EAgentState PreviousState = EAgentState::None;
	bool bPaused = false;
	bool bApproved = false;
	FString ConversationId;
	FString UndoConversationId;
	FString RedoConversationId;
	TArray<TSharedPtr<FJsonObject>> StoredMessages;
	TSharedPtr<FJsonObject> StoredJsonBody;
	TArray<TSharedPtr<FJsonValue>> ToolResults;
	TSharedRef<FKestrelPendingTools> PendingTools;
	TSharedPtr<FTurn> Turn; // null when nothing is at work
	TSharedRef<FKestrelWorkRunner> TurnRunner;
	FSimpleMulticastDelegate StateChanged;
	FOnKestrelToolDone ToolDone;
	FDelegateHandle CompileFinishedHandle;
	TOptional<FString> CompilingConversationId; // of the last compile that was started
};
