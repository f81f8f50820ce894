#pragma once

#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "Delegates/IDelegateInstance.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/Geometry.h"
#include "Layout/Visibility.h"
#include "Styling/SlateColor.h"
#include "Types/WidgetActiveTimerDelegate.h"
#include "Widget/LineDiff.h"
#include "Widget/SKestrelConversationView.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class FActiveTimerHandle;
class SBorder;
class SBox;
class SButton;
class SComboButton;
class SKestrelApprovalList;
class SKestrelPartialAnswer;
class SKestrelPromptBox;
class SKestrelUndoButton;
enum class EKestrelAnswer : uint8;
class SMultiLineEditableText;
struct FKestrelTranscriptEntry;

/**
 * The content of the plugin's tab: the conversation as a list of blocks, a prompt box, and the buttons that drive the
 * agent. Each tab has a widget of its own; the conversation itself lives in the agent and outlives them. Above it, a
 * list leads to the project's earlier conversations, which can be read in place of the current one.
 */
class KESTREL_API SKestrelWidget : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelWidget) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
	virtual ~SKestrelWidget() override;

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;
	/**
	 * The page keys turn the conversation's pages, wherever in the panel the focus is, and F8 goes to the next change,
	 * with Shift to the one before; Alt+Up and Alt+Down walk through the user's turns, and F1 lists the keys. Asked
	 * first, since every text has a use for the page keys, but none of the conversation's can show what lies beyond the
	 * view.
	 */
	virtual FReply OnPreviewKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;
	/** Plain Enter sends, Escape goes back to the prompt; anything else is left to others. */
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;
	virtual bool SupportsKeyboardFocus() const override { return true; }
	/** Focus on the panel means focus on its prompt box. */
	virtual FReply OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent) override;

	/** Adds a block and logs it; one that ends in "..." shows moving dots until the next. */
	void OnAddStatusMessage(const FString& Message, const FLinearColor& Color, const FName& FontStyle, float FontSize);

	/** Adds a block with the difference between two texts of a file, if the settings want it shown, and logs both. */
	void OnAddDiffMessage(const FString& FilePath, const FString& Before, const FString& After);

	/** Adds a line that is shown and nothing more: neither logged, nor moving. */
	void OnAddHint(const FText& Hint);

	// The difference between two texts; see LineDiff.h.
	static TArray<FString> SplitIntoLines(const FString& Text);
	static TArray<FDiffLine> ComputeLongestCommonSubsequence(
		const TArray<FString>& OldLines, const TArray<FString>& NewLines);
	static TArray<FDiffChunk> GenerateDiff(const FString& OldText, const FString& NewText);
	/** What stands before a line: "+ ", "- " or two spaces. */
	FString GetDiffLinePrefix(const FDiffLine& Line) const;
	FSlateColor GetDiffLineColor(const FDiffLine& Line) const;
	/** The lines of all chunks, each with its prefix and in its colour. Neighbours of one kind are one text. */
	TSharedRef<SWidget> CreateDiffContent(const TArray<FDiffChunk>& Chunks) const;
	/** The numbers of the lines beside their content: in the old text, or in the new. */
	TSharedRef<SWidget> CreateLineNumberColumn(const TArray<FDiffChunk>& Chunks, bool bOldNumbers) const;

	/** Replaces every occurrence of each key by its value, without regard to case, in the order of the map. */
	static FString ReplaceStrings(const FString& Text, const TMap<FString, FString>& Replacements);

	FReply OnRequestStartButtonClicked();
	FReply OnContinueButtonClicked();
	FReply OnPauseButtonClicked();
	FReply OnApproveButtonClicked();
	void OnAnswerTool(int32 Index, EKestrelAnswer Answer);
	void OnAllowReading();
	FReply OnUndoClicked();
	FReply OnRedoClicked();
	FReply OnRequestEndButtonClicked();

	// What the buttons show of the agent's state.
	bool UpdateStartButton() const;
	bool UpdateContinueButtonEnability() const;
	EVisibility UpdateContinueButtonVisibility() const;
	EVisibility UpdatePauseButtonVisibility() const;
	EVisibility UpdateApproveButton() const;
	bool IsPauseButtonEnabled() const;
	bool IsApproveButtonEnabled() const;
	bool IsEndButtonEnabled() const;
	bool IsUndoButtonEnabled() const;
	bool IsRedoButtonEnabled() const;

private:
	/** What happens once, when all parts are there. */
	void Begin();
	void BindToAgent();
	static void PauseAgent();
	/** What the service has told of its answer, behind the last block. */
	void ShowPartialAnswer();
	void ShowWelcome();
	/** The current conversation, or an earlier one in its place. */
	TSharedRef<SWidget> MakeApprovalList();
	TSharedRef<SWidget> MakeConversationArea();
	/** Slate units; 0, which limits nothing, before it was painted. */
	float GetHeight() const;
	float GetWidth() const;
	float GetPromptHeightLimit() const;
	float GetApprovalListHeightLimit() const;
	float GetClientCallsHeightLimit() const;
	TSharedRef<SWidget> MakeButtonRow();
	/** All but End, which is always in sight. */
	TSharedRef<SWidget> MakeButtonsOfRow();
	// What a button does, or why it cannot be pressed.
	FText GetStartToolTip() const;
	FText GetContinueToolTip() const;
	FText GetApproveToolTip() const;
	void BindUndoButtons();
	FText GetUndoToolTip() const;
	FText GetRedoToolTip() const;
	FText GetEndToolTip() const;
	/** A block of the conversation that is shown, without logging it. */
	SKestrelConversationView::FBlock ShowStatusMessage(
		const FString& Message, const FLinearColor& Color, const FName& FontStyle, float FontSize);
	void ShowHint(const FText& Hint);
	void ShowChange(const FString& FilePath, const FString& Before, const FString& After);
	void ShowNotices();

	// The conversations of the project.
	TSharedRef<SWidget> MakeHistoryHeader();
	TSharedRef<SWidget> MakeHistoryButton();
	TSharedRef<SWidget> MakeConversationList();
	FText GetConversationTitle() const;
	EVisibility GetHistoryVisibility() const;
	EVisibility GetEarlierVisibility() const;
	EVisibility GetCurrentVisibility() const;
	FReply OnBackToCurrentClicked();
	TSharedRef<SWidget> MakeEarlierButtons();
	EVisibility GetUndoEarlierVisibility() const;
	EVisibility GetRedoEarlierVisibility() const;
	/** What else goes when the earlier conversation is undone. */
	FText GetEarlierCaution() const { return EarlierCaution; }
	FReply OnUndoEarlierClicked();
	FReply OnRedoEarlierClicked();
	/** Shows a conversation, to be read only; the current one goes on behind it. */
	void OpenConversation(const FString& Id);
	void CloseEarlierConversation();
	void UsePromptAgain(const FString& Prompt);
	void OnConversationDeleted();
	/** From its transcript, and the earlier one that is open as well. */
	void ShowConversationAgain();
	/** Draws again what was said before this panel was opened, and logs what no panel has shown. */
	void RestoreConversation();
	void LogWhatWasMissed(TConstArrayView<FKestrelTranscriptEntry> Entries) const;
	/** @return the last of them; without a text when it is no status message */
	SKestrelConversationView::FBlock ShowEntries(TConstArrayView<FKestrelTranscriptEntry> Entries);
	SKestrelConversationView::FBlock ShowEntry(const FKestrelTranscriptEntry& Entry);

	void AddDiffBlock(const FString& FilePath, const FString& Before, const FString& After);
	/** The path of the file, how many lines were added and removed, and a button that copies the path. */
	TSharedRef<SWidget> MakeDiffHeader(const FString& FilePath, const TArray<FDiffChunk>& Chunks) const;
	FReply OnCopyPathClicked(FString FilePath) const;
	FReply OnOpenFileClicked(FString FilePath, int32 Line) const;
	EActiveTimerReturnType SetFocusPostConstruct(double InCurrentTime, float InDeltaTime);
	/** The list shows what waits now, and Approve stands out when something of it can work. */
	void OnAgentStateChanged();
	EVisibility GetApprovalListVisibility() const;
	/** The exact parts of a text that would change, with invisible characters as escapes. */
	TSharedRef<SWidget> MakeChangeView(const FString& Before, const FString& After) const;
	/** Both columns of numbers beside the lines of a difference. */
	TSharedRef<SWidget> MakeChunksView(TArray<FDiffChunk> Chunks) const;
	/** The changes with a few lines around them, which are in OutChanges as well, and folds for the rest. */
	TSharedRef<SWidget> MakeFoldedView(const TArray<FDiffChunk>& Chunks, TArray<TSharedRef<SWidget>>& OutChanges) const;
	static bool IsUserScrolling() { return bIsUserScrolling; }
	static void OnScrolled(bool bAwayFromEnd);
	static void OnEndReached();
	/** A click took the focus to its button; the next thing the user does is to type. */
	FReply HandledWithFocusOnPrompt() const;
	bool IsPromptEmpty() const;
	FString TakePrompt();
	bool IsWorking() const;
	/** Lets what is in the box wait until the agent awaits the user. */
	void QueuePrompt();
	/** Sends what waits; asked in each frame while something does. */
	bool SendQueuedPrompt(float DeltaTime);
	/** A prompt that was not answered comes back into the box, with what waits behind it. */
	void GiveBackUnansweredPrompt();

	void StartProgressIfWorking(const FString& Message, const SKestrelConversationView::FBlock& Block);
	void StartProgressAnimation(
		const TSharedRef<SMultiLineEditableText>& TextWidget, const TSharedRef<SBorder>& Border);
	/** The formatted view shows a status that comes again as a number. @return false if the message is another one */
	bool RepeatProgress(const FString& Message);
	/** In the formatted view: how often the status has come, and for how long it has been shown. */
	FString GetProgressNote() const;
	EActiveTimerReturnType UpdateProgressAnimation(double InCurrentTime, float InDeltaTime);
	void StopProgressAnimation();

	TSharedPtr<SKestrelConversationView> Conversation;        // the current one
	TSharedPtr<SKestrelConversationView> EarlierConversation; // null while the current one is shown
	FString EarlierId;                                        // empty while the current one is shown
	FString EarlierTitle;
	FText EarlierCaution;
	TSharedPtr<SBox> EarlierBox;
	TSharedPtr<SComboButton> HistoryButton;
	TSharedPtr<SComboButton> KeysButton;
	TSharedPtr<SKestrelApprovalList> ApprovalList;
	FDelegateHandle StateChangedHandle;
	FDelegateHandle RunChangedHandle;
	FDelegateHandle TextSizeHandle;
	TSharedPtr<SKestrelPartialAnswer> PartialAnswer; // null while there is none
	TSharedPtr<SKestrelPromptBox> PromptBox;
	FString UnansweredPrompt; // the last that was sent, until something of an answer comes
	FTSTicker::FDelegateHandle QueueTicker;
	TSharedPtr<SButton> StartButton;
	TSharedPtr<SButton> ContinueButton;
	TSharedPtr<SButton> PauseButton;
	TSharedPtr<SButton> ApproveButton;
	TSharedPtr<SKestrelUndoButton> UndoButton;
	TSharedPtr<SKestrelUndoButton> RedoButton;
	TSharedPtr<SButton> EndButton;

	TSharedPtr<SMultiLineEditableText> AnimatedText;
	TSharedPtr<SBorder> AnimatedBorder;
	FString AnimatedBaseText;   // without its dots
	int32 NumDots = 0;          // 0 to 3
	FString ProgressMessage;    // of the animated block as long as it is the last; empty otherwise
	int32 NumRepeats = 0;       // of that message, which are shown as a number
	double ProgressStart = 0.0; // seconds of FPlatformTime
	TWeakPtr<FActiveTimerHandle> AnimationTimer;

	// Shared by all panels: where the user left the view is where a reopened one stands.
	static bool bIsUserScrolling;
	static double LastScrollTime; // seconds of FPlatformTime
};
