#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Layout/Visibility.h"
#include "Types/WidgetActiveTimerDelegate.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SVerticalBox;

DECLARE_DELEGATE_OneParam(FOnKestrelExampleChosen, const FString& /*Prompt*/);

/** What a panel without a conversation shows below the welcome: prompts to begin with, and where requests go. */
class SKestrelExamples : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelExamples) {}
	SLATE_EVENT(FOnKestrelExampleChosen, OnChosen)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	EVisibility GetExamplesVisibility() const;
	void Refresh();
	EActiveTimerReturnType RefreshWhileAssetsLoad(double InCurrentTime, float InDeltaTime);
	FReply OnExampleClicked(FString Prompt) const;

	FOnKestrelExampleChosen OnChosen;
	TSharedPtr<SVerticalBox> Rows;
	TArray<FString> Shown;
};
