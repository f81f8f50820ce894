#pragma once

#include "Agent/Tools/PendingTools.h"
#include "Agent/Tools/ToolPlan.h"
#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SBox;
class SVerticalBox;

/** What a row unfolds: the widget that shows how a file would change. */
DECLARE_DELEGATE_RetVal_TwoParams(
	TSharedRef<SWidget>, FOnMakeChangeView, const FString& /*Before*/, const FString& /*After*/);

/** A person answers for one of the tools; its index. */
DECLARE_DELEGATE_TwoParams(FOnAnswerTool, int32 /*Index*/, EKestrelAnswer);

/**
 * The tools that wait for approval, a row each: what it does, to which file, how many replacements; below it, on lines
 * of their own, why to look twice and why it will fail. The change itself can be unfolded. What is not seen in a name
 * is shown as an escape.
 *
 * What to look at twice comes first, what will fail last. The rows' numbers tell the order in which the tools run. Each
 * tool of several can be accepted or rejected by itself, and that be taken back until all are answered.
 */
class SKestrelApprovalList : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelApprovalList) {}
	SLATE_EVENT(FOnMakeChangeView, OnMakeChangeView)
	SLATE_EVENT(FOnAnswerTool, OnAnswer)
	/** The user wants tools that only read to run without asking from now on. */
	SLATE_EVENT(FSimpleDelegate, OnAllowReading)
	SLATE_EVENT(FSimpleDelegate, OnEditRules)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	/**
	 * Replaces the rows.
	 *
	 * @param bPaused  whether it is Continue that runs them
	 */
	void SetTools(const FKestrelPendingTools& Tools, bool bPaused);

private:
	/** @param Number  of the tool in the answer, from 1; 0 for the only one, which has none */
	TSharedRef<SWidget> MakeRow(const FKestrelPendingTools::FTool& Tool, int32 Number, bool bUnfolded);
	/** What can be done with the tool of a row. */
	TSharedRef<SWidget> MakeRowButtons(
		const FKestrelPendingTools::FTool& Tool, int32 Number, const TSharedRef<SVerticalBox>& Row);
	TSharedRef<SWidget> MakeAnswerButton(const FText& Label, const FText& ToolTip, int32 Number, EKestrelAnswer Given);
	/** What can be done so that less is asked. */
	TSharedRef<SWidget> MakeRuleButtons(bool bOnlyRead);
	/** A button that unfolds the change below the row, and folds it again. */
	TSharedRef<SWidget> MakeUnfoldButton(
		const TSharedRef<FKestrelToolPlan>& Plan, int32 Number, const TSharedRef<SVerticalBox>& Row);
	/** The change, below the row's text when there are several rows: whoever hears or types does not see where it is.
	 */
	TSharedRef<SWidget> MakeUnfolded(const FKestrelToolPlan& Plan, int32 Number) const;

	/** Shows the change of a row below it, as the last call of SetTools left it. */
	void Unfold(int32 Number, const TSharedRef<FKestrelToolPlan>& Plan, SVerticalBox& Row);

	FOnMakeChangeView OnMakeChangeView;
	FOnAnswerTool OnAnswer;
	FSimpleDelegate OnAllowReading;
	FSimpleDelegate OnEditRules;
	TSharedPtr<SBox> Heading;
	TSharedPtr<SBox> RuleButtons;
	/** The rows whose change is unfolded, by their number: they stay so when one of the tools is answered. */
	TMap<int32, TSharedRef<SWidget>> Unfolded;
	TArray<FString> ToolUseIds; // of the rows
	TSharedPtr<SVerticalBox> Rows;
};
