#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Widget/SKestrelPart.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

struct FKestrelLink;

/** An answer of the service: who speaks, a button that copies what was written, and the text with its formatting. */
class SKestrelAnswer : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelAnswer) {}
	/** Markdown, as the service wrote it. */
	SLATE_ARGUMENT(FString, Source)
	/** See SKestrelMarkdown. */
	SLATE_EVENT(FOnKestrelPartShown, OnPartShown)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	TSharedRef<SWidget> MakeHeading();
	FReply OnCopyClicked() const;
	void OnLinkChosen(const FKestrelLink& Link, const FVector2D& ScreenPosition);

	FString Source;
};
