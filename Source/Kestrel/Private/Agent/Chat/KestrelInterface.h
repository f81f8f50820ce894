#pragma once

#include "Agent/Chat/PromptLog.h"
#include "Agent/Chat/PromptStore.h"
#include "Agent/Chat/Transcript.h"
#include "Agent/FileHistory.h"
#include "Agent/History/TransactionLookup.h"
#include "CoreMinimal.h"

enum class EKestrelAnswer : uint8;
struct FKestrelUndoPreview;

DECLARE_DELEGATE_FourParams(FOnAddStatusMessageDelegate, const FString& /*Message*/, const FLinearColor& /*Color*/,
	const FName& /*FontStyle*/, float /*FontSize*/);
DECLARE_DELEGATE_OneParam(FOnAddHintDelegate, const FText& /*Hint*/);
DECLARE_DELEGATE_ThreeParams(
	FOnAddDiffMessageDelegate, const FString& /*FilePath*/, const FString& /*Before*/, const FString& /*After*/);

/**
 * What the panel and the rest of the plugin know of each other.
 *
 * It forwards the user's requests to the agent in the states that allow them and relays the agent's messages to the
 * panel that is open, if one is. What was said it keeps for panels that are opened later. It keeps the prompt logs: a
 * file a day, in Plugins/kestrel-unreal/Logs of the project.
 */
class KESTREL_API FKestrelInterface
{
public:
	static FKestrelInterface& Get();

	/** Makes the log directory and applies the retention policy, once in the editor's run. */
	void Initialize();
	/** Cancels what the agent is doing. */
	void Shutdown();

	FKestrelPromptLog& GetPromptLog() { return PromptLog; }
	FKestrelTranscript& GetTranscript() { return Transcript; }
	FKestrelPromptStore& GetPromptStore() { return PromptStore; }
	// The same by the interface's own names.
	void EnsureLogDirectoryExists() const { PromptLog.EnsureFolderExists(); }
	TArray<FString> GetAllLogFiles() const { return PromptLog.GetAllFiles(); }
	void DeleteAllLogs() { PromptLog.DeleteAll(); }
	void DeleteOldLogs(int32 Days) { PromptLog.DeleteOld(Days); }
	bool IsLogFileOlderThanDays(const FString& File, int32 Days) const
	{
		return FKestrelPromptLog::IsOlderThanDays(File, Days);
	}
	FString GetPromptLogFilePath() const { return PromptLog.GetFilePath(); }
	void KestrelInterfaceLogString(const FString& Text, const FString& FilePath, bool bWithTimestamp) const
	{
		PromptLog.Append(Text, FilePath, bWithTimestamp);
	}

	/** From now on everything belongs to a new conversation. Id is a GUID. */
	void BeginConversation(const FString& Id, const FString& Prompt);
	/**
	 * For a panel that opens: the first one after a start of the editor finds the project's last conversation. Not in
	 * unattended editors, where nobody reads it.
	 */
	void RestoreConversation();
	/** Tells the user of conversations that could not be read. */
	void ReportDamagedConversations();

	/** Only from `Idle`; otherwise nothing happens. */
	void InitialRequest(const FString& Prompt);
	/** Only from `AwaitingUpdate`; otherwise nothing happens. */
	void RegularRequest(const FString& Prompt);
	/** Only from `AwaitingApproval`; otherwise nothing happens. */
	void Approve();
	/** Accepts or rejects one of the tools that wait; when all are answered, those that are accepted run. */
	void AnswerTool(int32 Index, EKestrelAnswer Answer);
	/** Lets tools that only read files of the project run from now on, and accepts those that wait. */
	void AlwaysAllowReading();
	void EndRequest(const FString& Message);
	void CancelRequest(const FString& Message);
	void PauseRequest();
	void Continue(FString Message);

	/**
	 * Undoes the last conversation's changes: its transactions in the editor, with all that came after them,
	 * and files. Then the game is compiled, and Blueprints are saved. Files that cannot be undone can be tried
	 * again.
	 */
	void UndoLastOperation();
	/** Redoes what was undone last; files only, and only when nothing in the editor was undone with them. */
	void RedoLastOperation();
	bool CanUndo() const;
	bool CanRedo() const;
	// The same for any conversation, by its id, as long as its changes are recorded.
	void UndoConversation(const FString& Id);
	void RedoConversation(const FString& Id);
	bool CanUndoConversation(const FString& Id) const;
	bool CanRedoConversation(const FString& Id) const;
	/** What they would touch. It reads up to so many files, so it is not for every frame. */
	FKestrelUndoPreview PreviewUndo(int32 MaxFiles = MAX_int32) const;
	FKestrelUndoPreview PreviewRedo(int32 MaxFiles = MAX_int32) const;
	/** Whether a compile was asked for by Undo or Redo, and not by a tool. */
	static bool IsCompileLabel(const FString& ToolId);
	/**
	 * Undoes the editor's transactions down to the last one of that title and with it, whoever made the others: it
	 * marks where the agent began.
	 *
	 * @return false when there is none that could be undone; then nothing is
	 */
	bool UndoUntilLastTransactionByName(const FString& Name) const;

	/** What was noticed before a panel could show it, told once, and whether the project's code is missing. */
	TArray<FString> TakeNotices();
	/** Hints that came up while no panel was open and are no part of a conversation; told once. */
	TArray<FText> TakeHints() { return MoveTemp(Hints); }

	/** What the panel shows and logs, but for the key, which a service or a user may repeat. */
	void OnAddStatusMessage(
		const FString& Message, const FLinearColor& Color, const FName& FontStyle, float FontSize) const;
	/** A status line of the plugin's own: what it is doing, in small italics. */
	void AddOwnStatusMessage(const FString& Message) const;
	/** A line for the person at the panel only: it is neither logged nor among the status messages. */
	void AddHint(const FText& Hint) const;
	/** A change for the panel to show and log, without the key. */
	void OnAddDiffMessage(const FString& FilePath, const FString& Before, const FString& After) const;

	/** Bound by the open panel. */
	FOnAddStatusMessageDelegate StatusMessageDelegate;
	FOnAddDiffMessageDelegate DiffMessageDelegate;
	FOnAddHintDelegate HintDelegate;
	/** While it is set, what is said and changed goes there, and not into the panel's conversation. */
	TFunction<void(const FKestrelTranscriptEntry&)> Redirect;

	// Font styles of status messages, as typefaces of the editor's default font.
	static const FName RegularFontName;
	static const FName BoldFontName;
	static const FName ItalicFontName;
	/** The interface's own status lines. */
	static const FLinearColor MessageColor;
	static const FLinearColor UserColor;
	static const FLinearColor AssistantColor;
	static constexpr float MessageFontSize = 8.0f;
	static constexpr float UserFontSize = 10.0f;
	static constexpr float AssistantFontSize = 10.0f;

private:
	FKestrelInterface() = default;
	UE_NONCOPYABLE(FKestrelInterface)

	/** Names the files whose changes are still there after an undo or redo. @return true when there are none */
	bool ReportLeftChanges(const FFileHistory::FFileEntries* Left) const;
	void OfferUndoOfEarlierRun();
	void ReportKeptText(const FString& FilePath, const FString& CopyPath) const;
	/** Keeps a block for panels that are opened later. */
	void Record(const FKestrelTranscriptEntry& Entry) const;
	/** A hint that a panel shows once, now or when it opens. */
	void AddPassingHint(const FText& Hint) const;
	/** Copies of files that an editor which ended while it was writing has left behind. */
	void CollectRescueNotices();

	mutable FKestrelTransactionLookup UndoLookup;
	mutable FKestrelTransactionLookup RedoLookup;
	mutable FKestrelTransactionLookup EarlierLookup;
	FKestrelPromptLog PromptLog;
	mutable FKestrelTranscript Transcript;
	FKestrelPromptStore PromptStore;
	TArray<FString> Notices;
	mutable TArray<FText> Hints;
	bool bInitialized = false;
};
