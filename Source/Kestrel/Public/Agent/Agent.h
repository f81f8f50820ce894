#pragma once

#include "Agent/KestrelAgentState.h"
#include "CoreMinimal.h"

class FJsonObject;
class FJsonValue;

/**
 * Drives a conversation with the AI service: one at a time, on the game thread.
 *
 * Each change of course goes through SetAgentState. What it does on entering a state:
 *
 *   Idle             forgets the conversation id, the pause and the approval; stops polling
 *   InitialRequest   shows the prompt, begins a new conversation, sends the prompt with the project's file tree
 *   RegularRequest   shows and sends a further prompt
 *   Continue         runs the tools that wait (or answers them as aborted, when the user wrote something instead),
 *                    and sends the results
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
	/** Broadcast after each change of state. */
	FSimpleMulticastDelegate& OnStateChanged() { return StateChanged; }

	void SetPaused(bool bInPaused) { bPaused = bInPaused; }
	bool WasPaused() const { return bPaused; }
	void SetApproved(bool bInApproved) { bApproved = bInApproved; }
	bool WasApproved() const { return bApproved; }

	/** Pauses after the answer in flight: its text is shown, its tools wait. */
	void PauseRequest() { SetPaused(true); }
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
	/** The "tool_use" blocks that wait for the user. */
	const TArray<TSharedPtr<FJsonObject>>& GetPendingToolUses() const { return PendingToolUses; }

	/** Runs the tool that a "tool_use" block names and keeps its result for the next request. */
	void HandleResponseToolUse(const TSharedPtr<FJsonObject>& Block);
	/** Answers a "tool_use" block without running anything, since the user wrote something instead. */
	void HandlePauseToolUse(const TSharedPtr<FJsonObject>& Block);
	/** @return the tool's result; a text that begins with "Error:" in any letter case is a failure */
	FString UseTool(const FString& Name, const FString& Id, const TSharedPtr<FJsonObject>& Input);

	/**
	 * Compiles the game in the background. The result is told by OnCompilationFinished under the id of the tool use, or
	 * under another label when it was not a tool that asked.
	 */
	void TriggerCompilationWithMessages(const FString& ToolId, const TArray<TSharedPtr<FJsonObject>>& Messages);
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
	struct FTool;

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
	void HandleContentBlocks(const TArray<TSharedPtr<FJsonValue>>& Content);
	void FinishAnswerWithoutToolResults();
	void SendToolResults();
	/** Sends an object of the agent's own making, and forgets the tool results that it carried. */
	void SendAndClearToolResults(const TSharedRef<FJsonObject>& Body);
	bool MayActWithoutAsking() const;

	static const FTool* FindTool(const FString& Name);
	FString UseFinishTool(const FString& Id, const FJsonObject& Input);
	FString UseCompileTool(const FString& Id, const FJsonObject& Input);
	FString UseExecutePythonTool(const FString& Id, const FJsonObject& Input);
	FString UseCreateFileTool(const FString& Id, const FJsonObject& Input);
	/** To create a file that exists means to replace it. */
	FString UseCreateOrReplaceCPPTool(const FString& Id, const FJsonObject& Input);
	FString UseCreateCPPTool(const FString& Id, const FJsonObject& Input);
	FString UseUpdateAndReplaceCPPTool(const FString& Id, const FJsonObject& Input);
	FString UseUpdateFileTool(const FString& Id, const FJsonObject& Input);
	FString UseInsertIntoFileTool(const FString& Id, const FJsonObject& Input);
	FString UseDeleteFileTool(const FString& Id, const FJsonObject& Input);
	FString UseDeleteCPPTool(const FString& Id, const FJsonObject& Input);
	FString UseReadTool(const FString& Id, const FJsonObject& Input);
	FString UseGetFileSystemTool(const FString& Id, const FJsonObject& Input);
	FString UseCreateBlueprintTool(const FString& Id, const FJsonObject& Input);
	FString UseReadBlueprintTool(const FString& Id, const FJsonObject& Input);
	FString UseModifyBlueprintTool(const FString& Id, const FJsonObject& Input);
	FString UseReadBehaviorTreeTool(const FString& Id, const FJsonObject& Input);
	FString UseSaveAndCompileAllDirtyBlueprintsTool(const FString& Id, const FJsonObject& Input);
	FString UseFindReferenceInAllFilesTool(const FString& Id, const FJsonObject& Input);

	EAgentState State = EAgentState::None;
	bool bPaused = false;
	bool bApproved = false;
	FString ConversationId;
	FString UndoConversationId;
	FString RedoConversationId;
	TArray<TSharedPtr<FJsonObject>> StoredMessages;
	TSharedPtr<FJsonObject> StoredJsonBody;
	TArray<TSharedPtr<FJsonValue>> ToolResults;
	TArray<TSharedPtr<FJsonObject>> PendingToolUses;
	FSimpleMulticastDelegate StateChanged;
	FDelegateHandle CompileFinishedHandle;
	TOptional<FString> CompilingConversationId; // of the last compile that was started
};
