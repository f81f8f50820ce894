#pragma once

#include "Agent/Tools/ToolPlan.h"
#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SBox;
class SVerticalBox;

/** What a row unfolds: the widget that shows how a file would change. */
DECLARE_DELEGATE_RetVal_TwoParams(
	TSharedRef<SWidget>, FOnMakeChangeView, const FString& /*Before*/, const FString& /*After*/);

/**
 * The tools that wait for approval, a row each: what it does, to which file, how many replacements; below it, on lines
 * of their own, why to look twice and why it will fail. The change itself can be unfolded. What is not seen in a name
 * is shown as an escape.
 *
 * What to look at twice comes first, what will fail last. The rows' numbers tell the order in which the tools run.
 */
class SKestrelApprovalList : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelApprovalList) {}
	SLATE_EVENT(FOnMakeChangeView, OnMakeChangeView)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	/**
	 * Replaces the rows.
	 *
	 * @param bPaused  whether it is Continue that runs them
	 */
	void SetPlans(const TArray<TSharedRef<FKestrelToolPlan>>& Plans, bool bPaused);

private:
	/** @param Number  of the tool in the answer, from 1; 0 for the only one, which has none */
	TSharedRef<SWidget> MakeRow(const TSharedRef<FKestrelToolPlan>& Plan, int32 Number);
	/** A button that unfolds the change below the row, and folds it again. */
	TSharedRef<SWidget> MakeUnfoldButton(
		const TSharedRef<FKestrelToolPlan>& Plan, int32 Number, const TSharedRef<SVerticalBox>& Row);
	/** The change, below the row's text when there are several rows: whoever hears or types does not see where it is.
	 */
	TSharedRef<SWidget> MakeUnfolded(const FKestrelToolPlan& Plan, int32 Number) const;

	FOnMakeChangeView OnMakeChangeView;
	TSharedPtr<SBox> Heading;
	TSharedPtr<SVerticalBox> Rows;
};
