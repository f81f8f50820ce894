#pragma once

#include "Agent/History/UndoPreview.h"
#include "CoreMinimal.h"
#include "Widget/SKestrelApproveButton.h"

DECLARE_DELEGATE_RetVal_OneParam(FKestrelUndoPreview, FOnPreviewUndo, int32 /*MaxFiles*/);

/**
 * Undo, or Redo. It tells what it will touch, and is pressed twice when something of others is at stake: the first
 * press says what.
 */
class SKestrelUndoButton : public SKestrelApproveButton
{
public:
	/** What it does, for instance "Undo the last conversation's changes". */
	void SetTexts(const FText& InName, const FText& InToolTip, const FText& InNothingToDo);
	void SetPreview(const FOnPreviewUndo& InPreview) { Preview = InPreview; }

	/**
	 * Before anything is done.
	 *
	 * @param OutQuestion  what to tell before the button is pressed again; empty when it may go on
	 * @return whether it may go on
	 */
	bool MayGoOn(FText& OutQuestion);
	/** A press is the first one again. */
	void ForgetQuestion() { Asked = FText::GetEmpty(); }
	/** What a press would touch, for the tool tip. */
	FText Describe();

private:
	FOnPreviewUndo Preview;
	FText Name;
	FText ToolTip;
	FText NothingToDo;
	FText Asked; // what was at stake when it was pressed
	FText Described;
	double TimeDescribed = 0.0; // seconds
};
