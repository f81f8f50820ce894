#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/Geometry.h"
#include "Layout/Visibility.h"
#include "Widget/Prompt/PromptRecall.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SMultiLineEditableText;
struct FSlateBrush;

/**
 * Where the user writes, and the prompt that waits until it can be sent.
 *
 * Up in the first line and Down in the last recall the prompts that were sent in this project. What is left in the box
 * when it goes is there in the next one.
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
	/** What takes the keyboard focus. */
	TSharedRef<SWidget> GetFocusTarget() const;

private:
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
	FString GetText() const;
	TArray<FString> GetLines() const;

	FOnKeyDown OnEnter;
	TSharedPtr<SMultiLineEditableText> Text;
	FKestrelPromptRecall Recall;
	FString QueuedPrompt;
};
