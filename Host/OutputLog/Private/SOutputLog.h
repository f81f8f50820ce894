#pragma once

#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class FOutputLogHistory;
class SLogView;
class SScrollBar;

/** The log with a filter and a button that clears it. */
class SOutputLog : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SOutputLog) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, const TSharedRef<const FOutputLogHistory>& InHistory);

private:
	void OnFilterChanged(const FText& Text);
	void OnViewMoved(float OffsetFraction, float ViewFraction);
	void OnScrolled(float OffsetFraction);
	FReply OnClearClicked();

	TSharedPtr<SLogView> View;
	TSharedPtr<SScrollBar> ScrollBar;
};
