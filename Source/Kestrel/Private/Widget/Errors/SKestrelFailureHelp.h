#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Widget/Errors/FailureHelp.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class STextBlock;

/** What to do about a failure: a sentence, and a button that does it. What a test finds takes the sentence's place. */
class SKestrelFailureHelp : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelFailureHelp) {}
	SLATE_ARGUMENT(FKestrelFailureHelp, Help)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	FReply OnClicked();
	void TestConnection();
	void ShowFinding(const FText& Finding);

	EKestrelRemedy Remedy = EKestrelRemedy::ShowLog;
	bool bIsTesting = false;
	TSharedPtr<STextBlock> Sentence;
};
