#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Layout/Visibility.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

/** Says that the same action fails again and again, and offers to pause. Nothing while all is well. */
class SKestrelLoopWarning : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelLoopWarning) {}
	/** Pause was pressed. */
	SLATE_EVENT(FSimpleDelegate, OnPause)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	TSharedRef<SWidget> MakeWords() const;
	EVisibility GetWarningVisibility() const;
	EVisibility GetPauseVisibility() const;
	FText GetHeading() const;
	FText GetFailure() const;
	FReply OnPauseClicked() const;

	FSimpleDelegate OnPause;
};
