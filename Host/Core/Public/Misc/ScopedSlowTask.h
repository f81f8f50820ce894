#pragma once

#include "CoreGlobals.h"
#include "Internationalization/Text.h"

/**
 * Work that takes long enough for the user to be told how far it is. The host writes it to the log, a line a second.
 */
class FScopedSlowTask
{
public:
	/** @param InAmountOfWork  in units of the caller's own; 0: there is nothing to do */
	FScopedSlowTask(float InAmountOfWork, const FText& InDefaultMessage = FText(), bool bInEnabled = true);
	~FScopedSlowTask();
	UE_NONCOPYABLE(FScopedSlowTask)

	/** Nothing is shown before this, or when the work takes no longer than the threshold (seconds). */
	void MakeDialogDelayed(float Threshold, bool bShowCancelButton = false, bool bAllowInPIE = false);
	/** The frame before is done; the next one takes that much of the work. */
	void EnterProgressFrame(float ExpectedWorkThisFrame = 1.0f, const FText& Text = FText());

private:
	void Show(const FText& Text);

	const float AmountOfWork;
	const FText DefaultMessage;
	const bool bEnabled;
	float Done = 0.0f;
	float CurrentFrame = 0.0f;
	double NextLineTime = 0.0; // seconds; 0: nothing is shown
	bool bShown = false;
};
