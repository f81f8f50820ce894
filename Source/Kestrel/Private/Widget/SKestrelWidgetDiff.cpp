#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Text/DisplayText.h"
#include "Framework/Text/TextLayout.h"
#include "HAL/PlatformApplicationMisc.h"
#include "KestrelSettings.h"
#include "Misc/Paths.h"
#include "SourceCodeNavigation.h"
#include "Styling/AppStyle.h"
#include "Styling/CoreStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "UObject/Class.h"
#include "Widget/Answer/SKestrelStyledText.h"
#include "Widget/DiffFold.h"
#include "Widget/KestrelStyle.h"
#include "Widget/SKestrelConversationView.h"
#include "Widget/SKestrelFold.h"
#include "Widget/SKestrelSidewaysScrollBox.h"
#include "Widget/SKestrelWidget.h"
#include "Widget/TextSize.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/Layout/SSeparator.h"
#include "Widgets/Layout/SWrapBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SNullWidget.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelWidget"

namespace KestrelDiffView
{
constexpr float BlockPadding = 8.0f;
constexpr float ColumnGap = 8.0f;
constexpr float HeaderGap = 2.0f;
constexpr float ChunkGap = 4.0f;
constexpr float FontSize = 9.0f;
// Of a path in a header: so much leaves room for the counts in a window of 600 units.
constexpr int32 MaxPathLength = 64;

const FLinearColor AddedColor(0.2f, 0.8f, 0.2f, 1.0f);
const FLinearColor RemovedColor(0.8f, 0.2f, 0.2f, 1.0f);
const FLinearColor NumberColor(0.4f, 0.4f, 0.4f, 1.0f);

/** A font of one width, so that the lines of all columns stand side by side. */
FTextBlockStyle MakeTextStyle(const FSlateColor& Color)
{
	FTextBlockStyle Style = FCoreStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText");
	Style.SetFont(FCoreStyle::GetDefaultFontStyle("Mono", KestrelTextSize::Scale(FontSize)));
	Style.SetColorAndOpacity(Color);
	return Style;
}

/** One widget below the other, for each chunk, with the same gap between chunks in all columns. */
TSharedRef<SVerticalBox> MakeColumn(
	const TArray<FDiffChunk>& Chunks, TFunctionRef<void(const FDiffChunk&, SVerticalBox&)> AddChunk)
{
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	for (int32 Index = 0; Index < Chunks.Num(); ++Index)
	{
		if (Index > 0)
		{
			// clang-format off
			Column->AddSlot()
			.AutoHeight()
			.Padding(0.0f, ChunkGap)
			[
				SNew(SSeparator)
				.Thickness(1.0f)
			];
			// clang-format on
		}
		AddChunk(Chunks[Index], *Column);
	}
	return Column;
}

int32 CountLines(const TArray<FDiffChunk>& Chunks, EDiffLineType Type)
{
	int32 Count = 0;
	for (const FDiffChunk& Chunk : Chunks)
	{
		for (const FDiffLine& Line : Chunk.Lines)
		{
			Count += Line.Type == Type ? 1 : 0;
		}
	}
	return Count;
}

/** Its line in the new text, from 1. */
int32 FindFirstChange(const TArray<FDiffChunk>& Chunks)
{
	int32 Line = 1;
	for (const FDiffChunk& Chunk : Chunks)
	{
		for (const FDiffLine& Each : Chunk.Lines)
		{
			if (Each.Type != EDiffLineType::Unchanged)
			{
				return FMath::Max(Line, Each.NewLineNumber);
			}
			Line = Each.NewLineNumber + 1;
		}
	}
	return 1;
}

/** The end of a long path tells more than its beginning. */
FString Shorten(const FString& Path)
{
	return Path.Len() > MaxPathLength ? TEXT("\u2026") + Path.Right(MaxPathLength - 1) : Path;
}

TSharedRef<SWidget> MakeCount(const FText& Text, const FLinearColor& Color)
{
	return SNew(STextBlock).Text(Text).ColorAndOpacity(Color);
}

/** The difference as it is shown: what would not be seen, or make what is seen read otherwise, is escaped. */
TArray<FDiffChunk> MakeShownChunks(const FString& Before, const FString& After)
{
	return SKestrelWidget::GenerateDiff(
		KestrelDisplayText::EscapeLines(Before), KestrelDisplayText::EscapeLines(After));
}

/** A sentence in place of a change; as a text that can be selected, it also reaches those who hear or type. */
TSharedRef<SWidget> MakeSentence(const FText& Text)
{
	return SNew(SMultiLineEditableText)
		.Text(Text)
		.IsReadOnly(true)
		.AutoWrapText(true)
		.WrappingPolicy(ETextWrappingPolicy::AllowPerCharacterWrapping)
		.AccessibleText(LOCTEXT("NoLines", "About the change"));
}

/** Lines are compared case-insensitively; where somebody decides, a change of case is a change. */
void ShowChangesOfCase(const TArray<FString>& NewLines, TArray<FDiffChunk>& Chunks)
{
	for (FDiffChunk& Chunk : Chunks)
	{
		TArray<FDiffLine> Lines;
		Lines.Reserve(Chunk.Lines.Num());
		for (const FDiffLine& Line : Chunk.Lines)
		{
			if (Line.Type != EDiffLineType::Unchanged || Line.Content.Equals(NewLines[Line.NewLineNumber - 1]))
			{
				Lines.Add(Line);
				continue;
			}
			Lines.Add({ Line.Content, EDiffLineType::Removed, Line.OldLineNumber, 0 });
			Lines.Add({ NewLines[Line.NewLineNumber - 1], EDiffLineType::Added, 0, Line.NewLineNumber });
		}
		Chunk.Lines = MoveTemp(Lines);
	}
}

/** What does not fit beside the numbers goes on in lines without a number. */
void FoldLongLines(int32 NumColumns, TArray<FDiffChunk>& Chunks)
{
	for (FDiffChunk& Chunk : Chunks)
	{
		TArray<FDiffLine> Lines;
		Lines.Reserve(Chunk.Lines.Num());
		for (const FDiffLine& Line : Chunk.Lines)
		{
			FDiffLine Piece = Line;
			for (const FString& Content : KestrelLineDiff::FoldLine(Line.Content, NumColumns))
			{
				Piece.Content = Content;
				Lines.Add(Piece);
				Piece.OldLineNumber = 0;
				Piece.NewLineNumber = 0;
			}
		}
		Chunk.Lines = MoveTemp(Lines);
	}
}

/** Characters that fit beside the numbers in a panel, in slate units; some more or less is no harm. */
int32 GetNumColumns(float PanelWidth)
{
	constexpr float NumbersAndMargins = 170.0f;
	constexpr float CharacterWidth = 7.5f;
	return FMath::Clamp(static_cast<int32>((PanelWidth - NumbersAndMargins) / CharacterWidth), 24, 160);
}

/** The lines are compared without regard to case, and without their ends. */
FText DescribeHiddenChange()
{
	return LOCTEXT("HiddenChange", "The lines differ in letter case or in how they end.");
}

FText NameOf(EDiffLineType Type)
{
	switch (Type)
	{
	case EDiffLineType::Added:
		return LOCTEXT("Added", "Added lines");
	case EDiffLineType::Removed:
		return LOCTEXT("Removed", "Removed lines");
	case EDiffLineType::Unchanged:
		break;
	}
	return LOCTEXT("Unchanged", "Unchanged lines");
}

/** A line in up to three pieces: what its counterpart does not have is underlined. */
void AddLine(const FString& Start, const FDiffLine& Line, const FTextPart* Changed, const FSlateColor& Color,
	TArray<FStyledPiece>& Pieces)
{
	const FTextBlockStyle Style = MakeTextStyle(Color);
	const bool bPart = Changed && Changed->End > Changed->Begin;
	const FTextPart Part = bPart ? *Changed : FTextPart{ Line.Content.Len(), Line.Content.Len() };
	Pieces.Add({ Start + Line.Content.Left(Part.Begin), Style, {} });
	if (bPart)
	{
		FStyledPiece& Piece = Pieces.Add_GetRef({ Line.Content.Mid(Part.Begin, Part.End - Part.Begin), Style, {} });
		Piece.bUnderline = true;
		Pieces.Add({ Line.Content.Mid(Part.End), Style, {} });
	}
}

/** The number of a line in one of the texts; empty where it does not stand. */
FString NumberOf(const FDiffLine& Line, bool bOldNumbers)
{
	const EDiffLineType Elsewhere = bOldNumbers ? EDiffLineType::Added : EDiffLineType::Removed;
	const int32 Number = bOldNumbers ? Line.OldLineNumber : Line.NewLineNumber;
	return Line.Type == Elsewhere || Number == 0 ? FString() : FString::FromInt(Number);
}
}

TArray<FString> SKestrelWidget::SplitIntoLines(const FString& Text)
{
	return KestrelLineDiff::SplitIntoLines(Text);
}

TArray<FDiffLine> SKestrelWidget::ComputeLongestCommonSubsequence(
	const TArray<FString>& OldLines, const TArray<FString>& NewLines)
{
	return KestrelLineDiff::Compare(OldLines, NewLines);
}

TArray<FDiffChunk> SKestrelWidget::GenerateDiff(const FString& OldText, const FString& NewText)
{
	return KestrelLineDiff::MakeChunks(
		ComputeLongestCommonSubsequence(SplitIntoLines(OldText), SplitIntoLines(NewText)));
}

FString SKestrelWidget::GetDiffLinePrefix(const FDiffLine& Line) const
{
	switch (Line.Type)
	{
	case EDiffLineType::Added:
		return TEXT("+ ");
	case EDiffLineType::Removed:
		return TEXT("- ");
	case EDiffLineType::Unchanged:
		break;
	}
	return TEXT("  ");
}

FSlateColor SKestrelWidget::GetDiffLineColor(const FDiffLine& Line) const
{
	switch (Line.Type)
	{
	case EDiffLineType::Added:
		return KestrelDiffView::AddedColor;
	case EDiffLineType::Removed:
		return KestrelDiffView::RemovedColor;
	case EDiffLineType::Unchanged:
		break;
	}
	return FLinearColor::White;
}

TSharedRef<SWidget> SKestrelWidget::CreateDiffContent(const TArray<FDiffChunk>& Chunks) const
{
	return KestrelDiffView::MakeColumn(Chunks, [this](const FDiffChunk& Chunk, SVerticalBox& Column) {
		const TMap<int32, FTextPart> Changed = KestrelDiffFold::FindChangedParts(Chunk);
		for (int32 Index = 0; Index < Chunk.Lines.Num();)
		{
			const EDiffLineType Type = Chunk.Lines[Index].Type;
			TArray<FStyledPiece> Pieces;
			for (; Index < Chunk.Lines.Num() && Chunk.Lines[Index].Type == Type; ++Index)
			{
				const FDiffLine& Line = Chunk.Lines[Index];
				const FString Start = (Pieces.IsEmpty() ? FString() : FString(TEXT("\n"))) + GetDiffLinePrefix(Line);
				KestrelDiffView::AddLine(Start, Line, Changed.Find(Index), GetDiffLineColor(Line), Pieces);
			}
			// clang-format off
			Column.AddSlot()
			.AutoHeight()
			[
				SKestrelStyledText::Make(MoveTemp(Pieces), false, KestrelDiffView::NameOf(Type))
			];
			// clang-format on
		}
	});
}

TSharedRef<SWidget> SKestrelWidget::CreateLineNumberColumn(const TArray<FDiffChunk>& Chunks, bool bOldNumbers) const
{
	return KestrelDiffView::MakeColumn(Chunks, [bOldNumbers](const FDiffChunk& Chunk, SVerticalBox& Column) {
		TArray<FString> Numbers;
		for (const FDiffLine& Line : Chunk.Lines)
		{
			Numbers.Add(KestrelDiffView::NumberOf(Line, bOldNumbers));
		}
		const FTextBlockStyle Style = KestrelDiffView::MakeTextStyle(KestrelDiffView::NumberColor);
		// clang-format off
		Column.AddSlot()
		.AutoHeight()
		[
			SNew(STextBlock)
			.Text(FText::FromString(FString::Join(Numbers, TEXT("\n"))))
			.TextStyle(&Style)
			.Justification(ETextJustify::Right)
		];
		// clang-format on
	});
}

FReply SKestrelWidget::OnOpenFileClicked(FString FilePath, int32 Line) const
{
	FSourceCodeNavigation::OpenSourceFile(FilePath, Line);
	return FReply::Handled();
}

FReply SKestrelWidget::OnCopyPathClicked(FString FilePath) const
{
	FPlatformApplicationMisc::ClipboardCopy(*FilePath);
	return HandledWithFocusOnPrompt();
}

TSharedRef<SWidget> SKestrelWidget::MakeDiffHeader(const FString& FilePath, const TArray<FDiffChunk>& Chunks) const
{
	FString ShownPath = FilePath;
	FPaths::MakePathRelativeTo(ShownPath, *FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()));
	const int32 NumAdded = KestrelDiffView::CountLines(Chunks, EDiffLineType::Added);
	const int32 NumRemoved = KestrelDiffView::CountLines(Chunks, EDiffLineType::Removed);
	// The path is no button's label: whoever reads the panel by its labels would take a file "pause" for the button.
	// clang-format off
	return SNew(SWrapBox)
		.UseAllottedSize(true)
		.InnerSlotPadding(FVector2D(KestrelDiffView::ColumnGap, KestrelDiffView::HeaderGap))
		+ SWrapBox::Slot()
		.VAlign(VAlign_Center)
		[
			SNew(STextBlock)
			.Text(FText::FromString(KestrelDiffView::Shorten(KestrelDisplayText::EscapeLine(ShownPath))))
			.ToolTipText(FText::FromString(KestrelDisplayText::EscapeLine(FilePath)))
		]
		+ SWrapBox::Slot()
		.VAlign(VAlign_Center)
		[
			KestrelDiffView::MakeCount(
				FText::FromString(FString::Printf(TEXT("+%d"), NumAdded)), KestrelDiffView::AddedColor)
		]
		+ SWrapBox::Slot()
		.VAlign(VAlign_Center)
		[
			KestrelDiffView::MakeCount(
				FText::FromString(FString::Printf(TEXT("-%d"), NumRemoved)), KestrelDiffView::RemovedColor)
		]
		+ SWrapBox::Slot()
		[
			SNew(SButton)
			.Text(LOCTEXT("OpenFile", "Open file"))
			.ToolTipText(LOCTEXT("OpenToolTip", "Open the file at the first change"))
			.OnClicked(this, &SKestrelWidget::OnOpenFileClicked, FilePath, KestrelDiffView::FindFirstChange(Chunks))
		]
		+ SWrapBox::Slot()
		[
			SNew(SButton)
			.Text(LOCTEXT("CopyPath", "Copy path"))
			.ToolTipText(LOCTEXT("CopyPathToolTip", "Copy the full path of the file"))
			.OnClicked(this, &SKestrelWidget::OnCopyPathClicked, FilePath)
		];
	// clang-format on
}

TSharedRef<SWidget> SKestrelWidget::MakeChangeView(const FString& Before, const FString& After) const
{
	if (!KestrelDisplayText::IsWorthComparing(Before, After))
	{
		return KestrelDiffView::MakeSentence(LOCTEXT("TooLarge", "The change is too large to be shown."));
	}
	// Who decides wants to see what changes, and not the rest of the file.
	TArray<FDiffChunk> Chunks = KestrelDiffView::MakeShownChunks(Before, After);
	KestrelDiffView::ShowChangesOfCase(SplitIntoLines(KestrelDisplayText::EscapeLines(After)), Chunks);
	Chunks.RemoveAll([](const FDiffChunk& Chunk) {
		return !Chunk.Lines.ContainsByPredicate(
			[](const FDiffLine& Line) { return Line.Type != EDiffLineType::Unchanged; });
	});
	if (Chunks.IsEmpty() && !Before.Equals(After))
	{
		return KestrelDiffView::MakeSentence(KestrelDiffView::DescribeHiddenChange());
	}
	KestrelDiffView::FoldLongLines(KestrelDiffView::GetNumColumns(GetWidth()), Chunks);
	return MakeChunksView(Chunks);
}

TSharedRef<SWidget> SKestrelWidget::MakeFoldedView(
	const TArray<FDiffChunk>& Chunks, TArray<TSharedRef<SWidget>>& OutChanges) const
{
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	for (const FDiffSegment& Segment : KestrelDiffFold::Split(Chunks))
	{
		const TArray<FDiffChunk> Shown = { Segment.Chunk };
		TSharedRef<SWidget> Lines = SNullWidget::NullWidget;
		if (Segment.bFolded)
		{
			Lines = SNew(SKestrelFold)
						.NumLines(Segment.Chunk.Lines.Num())
						.NumChanges(Segment.NumChanges)
						.OnMakeFolded(FOnMakeFolded::CreateSP(this, &SKestrelWidget::MakeChunksView, Shown));
		}
		else
		{
			Lines = MakeChunksView(Shown);
			OutChanges.Add(Lines);
		}
		// clang-format off
		Column->AddSlot()
		.AutoHeight()
		[
			Lines
		];
		// clang-format on
	}
	return Column;
}

TSharedRef<SWidget> SKestrelWidget::MakeChunksView(TArray<FDiffChunk> Chunks) const
{
	// clang-format off
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.Padding(0.0f, 0.0f, KestrelDiffView::ColumnGap, 0.0f)
		[
			CreateLineNumberColumn(Chunks, true)
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.Padding(0.0f, 0.0f, KestrelDiffView::ColumnGap, 0.0f)
		[
			CreateLineNumberColumn(Chunks, false)
		]
		+ SHorizontalBox::Slot()
		.FillWidth(1.0f)
		[
			SNew(SKestrelSidewaysScrollBox)
			.Orientation(Orient_Horizontal)
			+ SScrollBox::Slot()
			[
				CreateDiffContent(Chunks)
			]
		];
	// clang-format on
}

void SKestrelWidget::OnAddDiffMessage(const FString& FilePath, const FString& Before, const FString& After)
{
	if (!GetDefault<UKestrelSettings>()->bDisplayFileChangesInChat)
	{
		return;
	}
	ShowChange(FilePath, Before, After);
	const FKestrelInterface& Interface = FKestrelInterface::Get();
	Interface.KestrelInterfaceLogString(Before, Interface.GetPromptLogFilePath(), true);
	Interface.KestrelInterfaceLogString(After, Interface.GetPromptLogFilePath(), true);
}

void SKestrelWidget::ShowChange(const FString& FilePath, const FString& Before, const FString& After)
{
	ProgressMessage.Reset();
	if (KestrelDisplayText::IsWorthComparing(Before, After))
	{
		AddDiffBlock(FilePath, Before, After);
	}
	else
	{
		Conversation->AddText(
			FText::Format(LOCTEXT("TooLargeFile", "{0} has changed. The change is too large to be shown."),
				FText::FromString(KestrelDisplayText::EscapeLine(FilePath)))
				.ToString(),
			FKestrelInterface::MessageColor, FKestrelInterface::ItalicFontName, FKestrelInterface::MessageFontSize);
	}
}

void SKestrelWidget::AddDiffBlock(const FString& FilePath, const FString& Before, const FString& After)
{
	const TArray<FDiffChunk> Chunks = KestrelDiffView::MakeShownChunks(Before, After);
	const bool bHidden = !Before.Equals(After) && KestrelDiffView::CountLines(Chunks, EDiffLineType::Added) == 0 &&
						 KestrelDiffView::CountLines(Chunks, EDiffLineType::Removed) == 0;
	TArray<TSharedRef<SWidget>> Changes;
	// clang-format off
	Conversation->AddBlock(
		SNew(SBorder)
		.BorderImage(FKestrelStyle::Get().GetBrush("Kestrel.Block.Diff"))
		.Padding(KestrelDiffView::BlockPadding)
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				MakeDiffHeader(FilePath, Chunks)
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				bHidden ? KestrelDiffView::MakeSentence(KestrelDiffView::DescribeHiddenChange())
						: SNullWidget::NullWidget
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			.Padding(0.0f, KestrelDiffView::ChunkGap, 0.0f, 0.0f)
			[
				MakeFoldedView(Chunks, Changes)
			]
		]);
	// clang-format on
	Conversation->AddChanges(Changes);
}

#undef LOCTEXT_NAMESPACE
