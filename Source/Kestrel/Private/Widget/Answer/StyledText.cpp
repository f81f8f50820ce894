#include "Widget/Answer/StyledText.h"

#include "Framework/Text/IRun.h"
#include "Framework/Text/SlateTextRun.h"
#include "Framework/Text/SlateTextUnderlineLineHighlighter.h"
#include "Framework/Text/TextLayout.h"
#include "Framework/Text/TextLineHighlight.h"
#include "Framework/Text/TextRange.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateBrush.h"
#include "Widget/KestrelStyle.h"

FKestrelStyledText::FKestrelStyledText(TArray<FStyledPiece>&& InPieces)
	: Pieces(MoveTemp(InPieces))
{
	SplitIntoLines();
}

FText FKestrelStyledText::GetText() const
{
	FString Text;
	for (const FStyledPiece& Piece : Pieces)
	{
		Text += Piece.Text;
	}
	return FText::FromString(Text);
}

bool FKestrelStyledText::HasLinks() const
{
	return Pieces.ContainsByPredicate([](const FStyledPiece& Piece) { return Piece.Link.IsSet(); });
}

FKestrelLink FKestrelStyledText::GetLinkAt(const FTextLocation& Location) const
{
	if (Lines.IsValidIndex(Location.GetLineIndex()))
	{
		for (const FPart& Part : Lines[Location.GetLineIndex()].Parts)
		{
			if (Location.GetOffset() >= Part.Begin && Location.GetOffset() < Part.End)
			{
				return Pieces[Part.Piece].Link;
			}
		}
	}
	return FKestrelLink();
}

void FKestrelStyledText::SplitIntoLines()
{
	Lines.AddDefaulted();
	for (int32 Index = 0; Index < Pieces.Num(); ++Index)
	{
		TArray<FString> Parts;
		Pieces[Index].Text.ParseIntoArray(Parts, TEXT("\n"), false);
		for (int32 Part = 0; Part < Parts.Num(); ++Part)
		{
			if (Part > 0)
			{
				Lines.AddDefaulted();
			}
			AddPart(Index, Parts[Part]);
		}
	}
	for (FLine& Line : Lines)
	{
		if (Line.Parts.IsEmpty())
		{
			Line.Parts.Add({ 0, 0, 0 }); // an empty line has a height as well
		}
	}
}

void FKestrelStyledText::AddPart(int32 Piece, const FString& Text)
{
	if (!Text.IsEmpty())
	{
		FLine& Line = Lines.Last();
		const int32 Begin = Line.Text->Len();
		*Line.Text += Text;
		Line.Parts.Add({ Piece, Begin, Line.Text->Len() });
	}
}

void FKestrelStyledText::SetText(const FString& SourceString, FTextLayout& TargetTextLayout)
{
	TArray<FTextLayout::FNewLineData> NewLines;
	NewLines.Reserve(Lines.Num());
	for (const FLine& Line : Lines)
	{
		TArray<TSharedRef<IRun>> Runs;
		for (const FPart& Part : Line.Parts)
		{
			const FTextBlockStyle& Style =
				Pieces.IsValidIndex(Part.Piece) ? Pieces[Part.Piece].Style : FTextBlockStyle::GetDefault();
			Runs.Add(FSlateTextRun::Create(FRunInfo(), Line.Text, Style, FTextRange(Part.Begin, Part.End)));
		}
		NewLines.Add(FTextLayout::FNewLineData(Line.Text, Runs));
	}
	TargetTextLayout.AddLines(NewLines);
	AddLineHighlights(TargetTextLayout);
}

/** A run does not draw lines along its text. */
void FKestrelStyledText::AddLineHighlights(FTextLayout& Layout) const
{
	const FSlateBrush& Brush = *FKestrelStyle::Get().GetBrush("Kestrel.Line");
	for (int32 Line = 0; Line < Lines.Num(); ++Line)
	{
		for (const FPart& Part : Lines[Line].Parts)
		{
			if (!Pieces.IsValidIndex(Part.Piece))
			{
				continue;
			}
			const FStyledPiece& Piece = Pieces[Part.Piece];
			const FTextBlockStyle& Style = Piece.Style;
			const FTextRange Range(Part.Begin, Part.End);
			if (Piece.Link.IsSet() || Piece.bUnderline)
			{
				Layout.AddLineHighlight(
					FTextLineHighlight(Line, Range, FSlateTextUnderlineLineHighlighter::DefaultZIndex,
						FSlateTextUnderlineLineHighlighter::Create(Brush, Style.Font, Style.ColorAndOpacity,
							Style.ShadowOffset, Style.ShadowColorAndOpacity)));
			}
			if (Piece.bStrike)
			{
				Layout.AddLineHighlight(FTextLineHighlight(Line, Range, FSlateTextStrikeLineHighlighter::DefaultZIndex,
					FSlateTextStrikeLineHighlighter::Create(
						Brush, Style.Font, Style.ColorAndOpacity, Style.ShadowOffset, Style.ShadowColorAndOpacity)));
			}
		}
	}
}

void FKestrelStyledText::GetText(FString& TargetString, const FTextLayout& SourceTextLayout)
{
	SourceTextLayout.GetAsText(TargetString);
}
