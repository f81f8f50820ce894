#pragma once

#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Input/DragAndDrop.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/Geometry.h"
#include "Layout/Visibility.h"
#include "Types/SlateEnums.h"
#include "Widget/Prompt/ProjectNames.h"
#include "Widget/Prompt/PromptRecall.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class FTextLocation;
class SKestrelCompletionList;
class SMenuAnchor;
class SMultiLineEditableText;
struct FKey;
struct FSlateBrush;

/**
 * Where the user writes, and the prompt that waits until it can be sent.
 *
 * Up in the first line and Down in the last recall the prompts that were sent in this project. What is left in the box
 * when it goes is there in the next one.
 *
 * "@" and letters behind it open a list of files and assets that the letters fit. Up and Down select, Enter and Tab put
 * the selected path in their place, Escape closes the list.
 */
class KESTREL_API SKestrelPromptBox : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelPromptBox) {}
	/** Plain Enter, which the text would keep to itself. */
	SLATE_EVENT(FOnKeyDown, OnEnter)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
	virtual ~SKestrelPromptBox() override;

	bool IsEmpty() const;
	/** Empties the box and remembers what was in it. @return what was in it */
	FString Take();
	/** Puts a text before what is in the box, with a blank line between, and the cursor at the end. */
	void PutBefore(const FString& Prompt);

	/** Empties the box; what was in it waits, behind what waits already. */
	void Queue();
	bool HasQueued() const { return !QueuedPrompt.IsEmpty(); }
	FString TakeQueued();
	/** Puts what waits back into the box. */
	void Withdraw();
	/** Puts names where the cursor is, with blanks around them. */
	void InsertNames(const TArray<FString>& NewNames);

	/** Assets and files can be dropped: their names are inserted. */
	virtual FReply OnDragOver(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent) override;
	virtual void OnDragEnter(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent) override;
	virtual void OnDragLeave(const FDragDropEvent& DragDropEvent) override;
	virtual FReply OnDrop(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent) override;

	/** What takes the keyboard focus. */
	TSharedRef<SWidget> GetFocusTarget() const;

private:
	TSharedRef<SWidget> MakeText();
	/** Beside the text: what else it can be filled with. */
	TSharedRef<SWidget> MakeNameButtons();
	bool IsCursorBehindWord() const;
	FText GetSelectionToolTip() const;
	FReply OnNameClicked();
	FReply OnSelectionClicked();
	TSharedRef<SWidget> MakeQueueLine();
	EVisibility GetQueueVisibility() const;
	FText GetQueueText() const;
	FText GetQueueToolTip() const;
	FReply OnWithdrawClicked();
	const FSlateBrush* GetBrush() const;
	FReply OnTextKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent);
	bool RecallOlder();
	bool RecallNewer();
	/** Whether the cursor stands in the first row that is seen. False where that cannot be told. */
	bool IsCursorInFirstRow() const;
	bool IsCursorInLastRow() const;
	/** Whether a text has room in a row of the box. */
	bool FitsInRow(const FString& Text) const;
	/** What is being completed: "@" with what lies between it and the cursor. */
	struct FToken
	{
		int32 LineIndex = 0;
		int32 Begin = 0; // of the "@" in its line
		FString Letters; // behind it

		bool BeginsWhere(const FToken& Other) const { return LineIndex == Other.LineIndex && Begin == Other.Begin; }
		bool IsSame(const FToken& Other) const { return BeginsWhere(Other) && Letters.Equals(Other.Letters); }
	};

	TOptional<FToken> FindToken() const;
	void OnTextChanged(const FText& NewText);
	void OnCursorMoved(const FTextLocation& Location);
	void OnTextCommitted(const FText& NewText, ETextCommit::Type Reason);
	void OnListOpenChanged(bool bIsOpen);
	TSharedRef<SWidget> GetList() const;
	/** Lists what fits what is being completed, if something is. */
	void UpdateList();
	/** Goes on reading the project's folders, in each frame until all are read. */
	bool ReadNames(float DeltaTime);
	void StopCompleting();
	bool HandleListKey(const FKey& Key);
	void Complete(const FString& Name);
	void SetTextWithoutList(const FString& NewText);

	FString GetText() const;
	TArray<FString> GetLines() const;

	FOnKeyDown OnEnter;
	TSharedPtr<SMultiLineEditableText> Text;
	FKestrelPromptRecall Recall;
	FString QueuedPrompt;
	TSharedPtr<SMenuAnchor> ListAnchor;
	TSharedPtr<SKestrelCompletionList> List;
	FKestrelProjectNames Names;
	bool bIsCompleting = false;
	bool bIsDropTarget = false;  // what is dragged over it can be dropped
	TOptional<FToken> Listed;    // what the list was last made for
	TOptional<FToken> Dismissed; // the list was closed for it
	FTSTicker::FDelegateHandle ReadTicker;
	bool bIsReading = false;
};
