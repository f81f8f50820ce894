#pragma once

#include "CoreMinimal.h"
#include "Widget/Answer/KestrelLink.h"
#include "Widget/Answer/SKestrelStyledText.h"
#include "Widget/Markdown/Markdown.h"
#include "Widget/SKestrelPart.h"
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
	/** If bound, what is far from view is not made, and whoever is told keeps in place what is read meanwhile. */
	SLATE_EVENT(FOnKestrelPartShown, OnPartShown)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	void SplitLongCode();
	/** Those from First up to, and without, End. */
	TSharedRef<SWidget> MakeBlocks(int32 First, int32 End);
	TSharedRef<SWidget> MakeParts();
	TSharedRef<SWidget> MakeContent(int32 Index);
	TSharedRef<SWidget> MakeText(const FMarkdownText& Text, int32 HeadingLevel);
	TSharedRef<SWidget> MakeCode(int32 Index);
	/** The language, and the button that copies. */
	TSharedRef<SWidget> MakeCodeHeading(int32 Index) const;
	TSharedRef<SWidget> MakeTable(const FMarkdownTable& Table);
	TSharedRef<SWidget> MakeRow(const FMarkdownTable& Table, int32 Row, const TArray<float>& Widths);
	/** The content behind the bars of quotes and the markers of items. */
	TSharedRef<SWidget> PutIntoContainers(
		const FMarkdownBlock& Block, float TopGap, const TSharedRef<SWidget>& Content) const;

	FOnKestrelLinkChosen OnLinkChosen;
	FOnKestrelPartShown OnPartShown;
	TArray<FMarkdownBlock> Blocks;            // long code in pieces
	TSet<int32> Continuations;                // of these, the pieces that continue the code before them
	int32 FilesLeft = KestrelLinks::MaxFiles; // while the widgets are made
};
