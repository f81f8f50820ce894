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
#include "Widget/SKestrelPart.h"
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
// A text that is higher is made in parts.
constexpr float MaxHeightAtOnce = 4000.0f;
constexpr float MinPartHeight = 1000.0f;
constexpr float LineHeight = 16.0f; // about

/** Above a block: it belongs to what stands closer. */
float GapAbove(const FMarkdownBlock& Block, bool bFirst)
{
	if (bFirst)
	{
		return 0.0f;
	}
	return Block.bTight ? TightGap : Block.Kind == EMarkdownBlock::Heading ? HeadingGap : BlockGap;
}

int32 CountCharacters(const FMarkdownText& Text)
{
	int32 Length = 0;
	for (const FMarkdownSpan& Span : Text)
	{
		Length += Span.Text.Len();
	}
	return Length;
}

int32 CountLines(const FString& Code)
{
	int32 Lines = 0;
	for (const TCHAR Character : Code)
	{
		Lines += Character == TEXT('\n') ? 1 : 0;
	}
	return Lines;
}

/** Of the text of a cell, with a limit, so that one long cell leaves room for the others. */
float MeasureCell(const FMarkdownText& Cell)
{
	constexpr int32 MaxLength = 60;
	constexpr int32 MinLength = 4;
	return static_cast<float>(FMath::Clamp(CountCharacters(Cell), MinLength, MaxLength));
}

/**
 * A comment or a string that goes over the end of a piece would be coloured wrongly from there on, so a piece ends
 * behind an empty line if there is one in reach.
 */
int32 FindEndOfPiece(const FString& Code, int32 Begin)
{
	constexpr int32 MinLines = 300;
	constexpr int32 MaxLines = 500;
	int32 NumLines = 0;
	for (int32 Index = Begin; Index < Code.Len(); ++Index)
	{
		if (Code[Index] != TEXT('\n'))
		{
			continue;
		}
		++NumLines;
		const bool bIsEmpty = Index > Begin && Code[Index - 1] == TEXT('\n');
		if (NumLines >= MaxLines || (NumLines >= MinLines && bIsEmpty))
		{
			return Index + 1;
		}
	}
	return Code.Len();
}

/** Of a block that is not made yet, with what is above it. It only has to be good enough for the scroll bar. */
float EstimateHeight(const FMarkdownBlock& Block)
{
	constexpr float CodeFrameHeight = 44.0f;
	constexpr float RowHeight = 24.0f;
	constexpr int32 CharactersPerLine = 80;
	const float Gap = GapAbove(Block, false);
	switch (Block.Kind)
	{
	case EMarkdownBlock::Code:
		return Gap + CodeFrameHeight + LineHeight * CountLines(Block.Code);
	case EMarkdownBlock::Rule:
		return Gap;
	case EMarkdownBlock::Table:
		return Gap + RowHeight * Block.Table.Rows.Num();
	case EMarkdownBlock::Paragraph:
	case EMarkdownBlock::Heading:
		break;
	}
	const int32 NumLines = 1 + CountCharacters(Block.Text) / CharactersPerLine;
	return Gap + LineHeight * static_cast<float>(NumLines);
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
	OnPartShown = InArgs._OnPartShown;
	Blocks = KestrelMarkdown::Read(InArgs._Source);
	if (!OnPartShown.IsBound())
	{
		ChildSlot[MakeBlocks(0, Blocks.Num())];
		Blocks.Empty();
		return;
	}
	SplitLongCode();
	ChildSlot[MakeParts()];
}

void SKestrelMarkdown::SplitLongCode()
{
	TArray<FMarkdownBlock> Pieces;
	Pieces.Reserve(Blocks.Num());
	for (FMarkdownBlock& Block : Blocks)
	{
		const FString Code = Block.Kind == EMarkdownBlock::Code ? Block.Code : FString();
		int32 End = KestrelMarkdownView::FindEndOfPiece(Code, 0);
		FMarkdownBlock Piece = MoveTemp(Block);
		if (End == Code.Len())
		{
			Pieces.Add(MoveTemp(Piece));
			continue;
		}
		Piece.Code = Code.Left(End);
		Pieces.Add(Piece);
		for (int32 Begin = End; Begin < Code.Len(); Begin = End)
		{
			End = KestrelMarkdownView::FindEndOfPiece(Code, Begin);
			Piece.Code = Code.Mid(Begin, End - Begin);
			for (FMarkdownContainer& Container : Piece.Containers)
			{
				Container.Marker.Empty();
			}
			Continuations.Add(Pieces.Add(Piece));
		}
	}
	Blocks = MoveTemp(Pieces);
}

TSharedRef<SWidget> SKestrelMarkdown::MakeParts()
{
	using namespace KestrelMarkdownView;
	TArray<float> Heights;
	float Whole = 0.0f;
	for (const FMarkdownBlock& Block : Blocks)
	{
		Whole += Heights.Add_GetRef(EstimateHeight(Block));
	}
	const bool bAtOnce = Whole <= MaxHeightAtOnce;
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	int32 First = 0;
	float Height = 0.0f;
	for (int32 Index = 0; Index < Blocks.Num(); ++Index)
	{
		Height += Heights[Index];
		const bool bIsLast = Index + 1 == Blocks.Num();
		if (!bIsLast && (bAtOnce || Height < MinPartHeight))
		{
			continue;
		}
		const TSharedRef<SKestrelPart> Part = SNew(SKestrelPart)
												  .OnMake(this, &SKestrelMarkdown::MakeBlocks, First, Index + 1)
												  .EstimatedHeight(Height)
												  .PaintsWhole(true)
												  .OnShown(OnPartShown);
		Column->AddSlot().AutoHeight()[Part];
		if (bAtOnce)
		{
			Part->Make();
		}
		First = Index + 1;
		Height = 0.0f;
	}
	if (bAtOnce)
	{
		Blocks.Empty();
	}
	return Column;
}

TSharedRef<SWidget> SKestrelMarkdown::MakeBlocks(int32 First, int32 End)
{
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	for (int32 Index = First; Index < End; ++Index)
	{
		const bool bFirst = Index == 0 || Continuations.Contains(Index);
		const float Gap = KestrelMarkdownView::GapAbove(Blocks[Index], bFirst);
		// clang-format off
		Column->AddSlot()
		.AutoHeight()
		[
			PutIntoContainers(Blocks[Index], Gap, MakeContent(Index))
		];
		// clang-format on
	}
	return Column;
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

TSharedRef<SWidget> SKestrelMarkdown::MakeContent(int32 Index)
{
	const FMarkdownBlock& Block = Blocks[Index];
	switch (Block.Kind)
	{
	case EMarkdownBlock::Code:
		return MakeCode(Index);
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

TSharedRef<SWidget> SKestrelMarkdown::MakeCode(int32 Index)
{
	const FMarkdownBlock& Block = Blocks[Index];
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	if (!Continuations.Contains(Index))
	{
		Column->AddSlot().AutoHeight()[MakeCodeHeading(Index)];
	}
	// clang-format off
	Column->AddSlot()
	.AutoHeight()
	[
		SNew(SKestrelSidewaysScrollBox)
		.Orientation(Orient_Horizontal)
		+ SScrollBox::Slot()
		[
			SKestrelStyledText::Make(
				KestrelMarkdownPieces::MakeCode(Block.Code, Block.Language), false, LOCTEXT("Code", "Code"))
		]
	];
	return SNew(SBorder)
		.BorderImage(FKestrelStyle::Get().GetBrush("Kestrel.Block.Code"))
		.Padding(KestrelMarkdownView::CodePadding)
		[
			Column
		];
	// clang-format on
}

TSharedRef<SWidget> SKestrelMarkdown::MakeCodeHeading(int32 Index) const
{
	FString Code = Blocks[Index].Code;
	for (int32 Next = Index + 1; Continuations.Contains(Next); ++Next)
	{
		Code += Blocks[Next].Code;
	}
	const FTextBlockStyle Small = KestrelMarkdownStyle::MakeSmallStyle();
	// clang-format off
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot()
		.FillWidth(1.0f)
		.VAlign(VAlign_Center)
		[
			SNew(STextBlock)
			.Text(FText::FromString(KestrelMarkdownPieces::ShowLanguage(Blocks[Index].Language)))
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
