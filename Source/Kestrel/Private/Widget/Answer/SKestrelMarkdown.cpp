#include "Widget/Answer/SKestrelMarkdown.h"

#include "HAL/PlatformApplicationMisc.h"
#include "Input/Reply.h"
#include "Layout/Margin.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widget/Answer/MarkdownPieces.h"
#include "Widget/Answer/MarkdownStyle.h"
#include "Widget/KestrelStyle.h"
#include "Widget/Markdown/CodeHighlight.h"
#include "Widget/SKestrelSidewaysScrollBox.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/Layout/SSeparator.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelMarkdown"

namespace KestrelMarkdownView
{
// Slate units.
constexpr float BlockGap = 8.0f;
constexpr float TightGap = 2.0f;
constexpr float HeadingGap = 12.0f;
constexpr float BarWidth = 3.0f;
constexpr float BarGap = 8.0f;
constexpr float MarkerWidth = 20.0f;
constexpr float MarkerGap = 4.0f;
constexpr float CodePadding = 8.0f;
constexpr float CellPadding = 4.0f;

/** Above a block: it belongs to what stands closer. */
float GapAbove(const FMarkdownBlock& Block, bool bFirst)
{
	if (bFirst)
	{
		return 0.0f;
	}
	return Block.bTight ? TightGap : Block.Kind == EMarkdownBlock::Heading ? HeadingGap : BlockGap;
}

/** Of the text of a cell, with a limit, so that one long cell leaves room for the others. */
float MeasureCell(const FMarkdownText& Cell)
{
	constexpr int32 MaxLength = 60;
	constexpr int32 MinLength = 4;
	int32 Length = 0;
	for (const FMarkdownSpan& Span : Cell)
	{
		Length += Span.Text.Len();
	}
	return static_cast<float>(FMath::Clamp(Length, MinLength, MaxLength));
}

EHorizontalAlignment ToSlate(EMarkdownAlignment Alignment)
{
	return Alignment == EMarkdownAlignment::Center  ? HAlign_Center
		   : Alignment == EMarkdownAlignment::Right ? HAlign_Right
													: HAlign_Fill;
}

/** A bullet of the source looks like one. */
FString ShowMarker(const FString& Marker)
{
	return Marker.Len() == 1 ? FString(TEXT("\u2022")) : Marker;
}

TSharedRef<SWidget> MakeBar()
{
	// clang-format off
	return SNew(SBox)
		.WidthOverride(BarWidth)
		[
			SNew(SBorder)
			.BorderImage(FKestrelStyle::Get().GetBrush("Kestrel.Quote"))
		];
	// clang-format on
}

TSharedRef<SWidget> MakeMarker(const FString& Marker)
{
	const FTextBlockStyle Style = KestrelMarkdownStyle::MakeTextStyle(EMarkdownStyle::None, false);
	// clang-format off
	return SNew(SBox)
		.MinDesiredWidth(MarkerWidth)
		.HAlign(HAlign_Right)
		[
			SNew(STextBlock)
			.Text(FText::FromString(ShowMarker(Marker)))
			.TextStyle(&Style)
		];
	// clang-format on
}
}

void SKestrelMarkdown::Construct(const FArguments& InArgs)
{
	OnLinkChosen = InArgs._OnLinkChosen;
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	AddBlocks(KestrelMarkdown::Read(InArgs._Source), *Column);
	ChildSlot[Column];
}

void SKestrelMarkdown::AddBlocks(TArray<FMarkdownBlock>&& Blocks, SVerticalBox& Column)
{
	for (int32 Index = 0; Index < Blocks.Num(); ++Index)
	{
		const float Gap = KestrelMarkdownView::GapAbove(Blocks[Index], Index == 0);
		// clang-format off
		Column.AddSlot()
		.AutoHeight()
		[
			PutIntoContainers(Blocks[Index], Gap, MakeContent(Blocks[Index]))
		];
		// clang-format on
	}
}

TSharedRef<SWidget> SKestrelMarkdown::PutIntoContainers(
	const FMarkdownBlock& Block, float TopGap, const TSharedRef<SWidget>& Content) const
{
	using namespace KestrelMarkdownView;
	const TSharedRef<SHorizontalBox> Row = SNew(SHorizontalBox);
	for (const FMarkdownContainer& Container : Block.Containers)
	{
		const FMargin Padding =
			Container.bQuote ? FMargin(0.0f, 0.0f, BarGap, 0.0f) : FMargin(0.0f, TopGap, MarkerGap, 0.0f);
		// clang-format off
		Row->AddSlot()
		.AutoWidth()
		.Padding(Padding)
		[
			Container.bQuote ? MakeBar() : MakeMarker(Container.Marker)
		];
		// clang-format on
	}
	// clang-format off
	Row->AddSlot()
	.FillWidth(1.0f)
	.Padding(0.0f, TopGap, 0.0f, 0.0f)
	[
		Content
	];
	// clang-format on
	return Row;
}

TSharedRef<SWidget> SKestrelMarkdown::MakeContent(const FMarkdownBlock& Block)
{
	switch (Block.Kind)
	{
	case EMarkdownBlock::Code:
		return MakeCode(Block);
	case EMarkdownBlock::Rule:
		return SNew(SSeparator).Orientation(Orient_Horizontal).Thickness(1.0f);
	case EMarkdownBlock::Table:
		return MakeTable(Block.Table);
	case EMarkdownBlock::Paragraph:
	case EMarkdownBlock::Heading:
		break;
	}
	return MakeText(Block.Text, Block.Level);
}

TSharedRef<SWidget> SKestrelMarkdown::MakeText(const FMarkdownText& Text, int32 HeadingLevel)
{
	return SKestrelStyledText::Make(KestrelMarkdownPieces::MakeText(Text, HeadingLevel, FilesLeft), true,
		LOCTEXT("Answer", "Answer"), OnLinkChosen);
}

TSharedRef<SWidget> SKestrelMarkdown::MakeCode(const FMarkdownBlock& Block)
{
	const FTextBlockStyle Small = KestrelMarkdownStyle::MakeSmallStyle();
	const FString Code = Block.Code;
	// clang-format off
	return SNew(SBorder)
		.BorderImage(FKestrelStyle::Get().GetBrush("Kestrel.Block.Code"))
		.Padding(KestrelMarkdownView::CodePadding)
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot()
				.FillWidth(1.0f)
				.VAlign(VAlign_Center)
				[
					SNew(STextBlock)
					.Text(FText::FromString(KestrelMarkdownPieces::ShowLanguage(Block.Language)))
					.TextStyle(&Small)
				]
				+ SHorizontalBox::Slot()
				.AutoWidth()
				[
					SNew(SButton)
					.Text(LOCTEXT("CopyCode", "Copy"))
					.ToolTipText(LOCTEXT("CopyCodeToolTip", "Copy this code"))
					.OnClicked_Lambda([Code]() {
						FPlatformApplicationMisc::ClipboardCopy(*Code);
						return FReply::Handled();
					})
				]
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SNew(SKestrelSidewaysScrollBox)
				.Orientation(Orient_Horizontal)
				+ SScrollBox::Slot()
				[
					SKestrelStyledText::Make(
						KestrelMarkdownPieces::MakeCode(Block.Code, Block.Language), false, LOCTEXT("Code", "Code"))
				]
			]
		];
	// clang-format on
}

TSharedRef<SWidget> SKestrelMarkdown::MakeTable(const FMarkdownTable& Table)
{
	TArray<float> Widths;
	Widths.Init(1.0f, Table.Columns.Num());
	for (const TArray<FMarkdownText>& Row : Table.Rows)
	{
		for (int32 Column = 0; Column < Row.Num(); ++Column)
		{
			Widths[Column] = FMath::Max(Widths[Column], KestrelMarkdownView::MeasureCell(Row[Column]));
		}
	}
	const TSharedRef<SVerticalBox> Rows = SNew(SVerticalBox);
	for (int32 Row = 0; Row < Table.Rows.Num(); ++Row)
	{
		// clang-format off
		Rows->AddSlot()
		.AutoHeight()
		[
			SNew(SBorder)
			.BorderImage(FKestrelStyle::Get().GetBrush(Row == 0 ? FName("Kestrel.Table.Head") : FName("Kestrel.Table.Row")))
			.Padding(0.0f)
			[
				MakeRow(Table, Row, Widths)
			]
		];
		// clang-format on
	}
	return Rows;
}

TSharedRef<SWidget> SKestrelMarkdown::MakeRow(const FMarkdownTable& Table, int32 Row, const TArray<float>& Widths)
{
	constexpr int32 LevelOfSmallestHeading = 6; // bold, and of the text's size
	const TSharedRef<SHorizontalBox> Cells = SNew(SHorizontalBox);
	for (int32 Column = 0; Column < Table.Columns.Num(); ++Column)
	{
		const bool bHasCell = Table.Rows[Row].IsValidIndex(Column);
		// clang-format off
		Cells->AddSlot()
		.FillWidth(Widths[Column])
		.HAlign(KestrelMarkdownView::ToSlate(Table.Columns[Column]))
		.VAlign(VAlign_Center)
		.Padding(KestrelMarkdownView::CellPadding)
		[
			MakeText(bHasCell ? Table.Rows[Row][Column] : FMarkdownText(), Row == 0 ? LevelOfSmallestHeading : 0)
		];
		// clang-format on
	}
	return Cells;
}

#undef LOCTEXT_NAMESPACE
