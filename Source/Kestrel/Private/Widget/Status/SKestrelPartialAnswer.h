#pragma once

#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SBox;

/** The answer as far as the service has told it, until the answer itself takes its place. Its links lead nowhere. */
class SKestrelPartialAnswer : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelPartialAnswer) {}
	/** Whether it is shown as Markdown. */
	SLATE_ARGUMENT(bool, IsFormatted)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	/** Shows the end of a long text. Nothing changes while the user reads or copies what is there. */
	void SetSource(const FString& NewSource);

private:
	TSharedRef<SWidget> MakeContent() const;

	bool bIsFormatted = false;
	FString Source;
	TSharedPtr<SBox> Content;
};
