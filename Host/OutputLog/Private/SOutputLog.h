#pragma once

#include "CoreMinimal.h"
#include "Logging/LogVerbosity.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class FOutputLogHistory;
class SLogView;
class SScrollBar;

/** The log with its filters and a button that clears it. */
class SOutputLog : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SOutputLog) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, const TSharedRef<const FOutputLogHistory>& InHistory);

private:
	/** Hides and shows the lines of a level. */
	TSharedRef<SWidget> MakeToolBar();
	TSharedRef<SWidget> MakeLevelSwitch(ELogVerbosity::Type Level, const FText& Label);
	TSharedRef<SWidget> MakeCategoryMenu();
	TSharedRef<SWidget> MakeCategorySwitch(FName Category);
	void OnFilterChanged(const FText& Text);
	void OnViewMoved(float OffsetFraction, float ViewFraction);
	void OnScrolled(float OffsetFraction);
	void OnViewMovedSideways(float OffsetFraction, float ViewFraction);
	void OnScrolledSideways(float OffsetFraction);
	FReply OnClearClicked();

	TSharedPtr<const FOutputLogHistory> History;
	TSharedPtr<SLogView> View;
	TSharedPtr<SScrollBar> ScrollBar;
	TSharedPtr<SScrollBar> SidewaysBar;
};
