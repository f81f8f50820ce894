#pragma once

#include "CoreMinimal.h"
#include "Widget/Answer/KestrelLink.h"
#include "Widget/Answer/SKestrelStyledText.h"
#include "Widget/Markdown/Markdown.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SVerticalBox;

/** A text of the service with its headings, lists, tables and code as what they are. */
class SKestrelMarkdown : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelMarkdown) {}
	/** What the service wrote. */
	SLATE_ARGUMENT(FString, Source)
	SLATE_EVENT(FOnKestrelLinkChosen, OnLinkChosen)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	void AddBlocks(TArray<FMarkdownBlock>&& Blocks, SVerticalBox& Column);
	TSharedRef<SWidget> MakeContent(const FMarkdownBlock& Block);
	TSharedRef<SWidget> MakeText(const FMarkdownText& Text, int32 HeadingLevel);
	TSharedRef<SWidget> MakeCode(const FMarkdownBlock& Block);
	TSharedRef<SWidget> MakeTable(const FMarkdownTable& Table);
	TSharedRef<SWidget> MakeRow(const FMarkdownTable& Table, int32 Row, const TArray<float>& Widths);
	/** The content behind the bars of quotes and the markers of items. */
	TSharedRef<SWidget> PutIntoContainers(
		const FMarkdownBlock& Block, float TopGap, const TSharedRef<SWidget>& Content) const;

	FOnKestrelLinkChosen OnLinkChosen;
	int32 FilesLeft = KestrelLinks::MaxFiles; // while the widgets are made
};
