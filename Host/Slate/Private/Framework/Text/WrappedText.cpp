#include "Framework/Text/WrappedText.h"

#include "Application/SlateApplicationBase.h"
#include "Rendering/SlateRenderer.h"
#include "Styling/SlateTypes.h"

namespace WrappedText
{
/** The last of Count indices that is not behind something, or 0. Begun(Index) is true up to one of them. */
template <typename BegunType>
static int32 FindLast(int32 Count, BegunType&& Begun)
{
	int32 Low = 0;
	int32 High = Count;
	while (High - Low > 1)
	{
		const int32 Middle = (Low + High) / 2;
		(Begun(Middle) ? Low : High) = Middle;
	}
	return Low;
}

static bool IsBlank(FStringView Text)
{
	for (const TCHAR Character : Text)
	{
		if (!FChar::IsWhitespace(Character))
		{
			return false;
		}
	}
	return true;
}

/**
 * Where a line ends that has room up to EndOfFitting.
 *
 * @param Places  where lines may begin, in order
 */
static int32 FindLineEnd(const FSlateFontMeasure& Measure, FStringView Text, const TArray<int32>& Places, int32 Begin,
	int32 EndOfFitting, ETextWrappingPolicy Policy)
{
	const int32 NumFitting =
		Places.Num() == 0 || Places[0] > EndOfFitting
			? 0
			: FindLast(Places.Num(), [&](int32 Place) { return Places[Place] <= EndOfFitting; }) + 1;
	const int32 Next = NumFitting < Places.Num() ? Places[NumFitting] : Text.Len();
	// Spaces may reach out of the room.
	if (IsBlank(Text.Mid(EndOfFitting, Next - EndOfFitting)))
	{
		return Next;
	}
	if (NumFitting > 0 && Places[NumFitting - 1] > Begin)
	{
		return Places[NumFitting - 1];
	}
	if (Policy == ETextWrappingPolicy::DefaultWrapping)
	{
		return Next;
	}
	int32 End = EndOfFitting;
	while (End > Begin && !Measure.IsCaretStop(Text, End))
	{
		--End;
	}
	// What is seen as one letter is wider than the line.
	for (; End == Begin || !Measure.IsCaretStop(Text, End); ++End)
	{
	}
	return End;
}
}

TArray<FString> FWrappedText::SplitIntoParagraphs(const FString& Text)
{
	TArray<FTextRange> Ranges;
	FTextRange::CalculateLineRangesFromString(Text, Ranges);
	TArray<FString> Paragraphs;
	Paragraphs.Reserve(Ranges.Num());
	for (const FTextRange& Range : Ranges)
	{
		Paragraphs.Add(Text.Mid(Range.BeginIndex, Range.Len()));
	}
	return Paragraphs;
}

void FWrappedText::Update(const FSource& NewSource)
{
	Measure = FSlateApplicationBase::Get().GetRenderer()->GetFontMeasureService();
	Source = NewSource;
	Lines.Reset();
	Size = FVector2D(0.0, 0.0);
	for (int32 Index = 0; Index < Source.Paragraphs->Num(); ++Index)
	{
		WrapParagraph(Index);
	}
}

void FWrappedText::WrapParagraph(int32 ParagraphIndex)
{
	const FString& Paragraph = (*Source.Paragraphs)[ParagraphIndex];
	if (Source.WrapWidth <= 0.0f)
	{
		AddLine(ParagraphIndex, 0, Paragraph.Len());
		return;
	}
	if (GetNumRuns(ParagraphIndex) > 1)
	{
		WrapRuns(ParagraphIndex);
		return;
	}
	const FSlateFontMeasure::ELongWords LongWords = Source.WrappingPolicy == ETextWrappingPolicy::DefaultWrapping
														? FSlateFontMeasure::ELongWords::Keep
														: FSlateFontMeasure::ELongWords::Break;
	int32 Begin = 0;
	for (const int32 Length :
		Measure->FindLineBreaks(Paragraph, *GetRun(ParagraphIndex, 0).Font, Source.WrapWidth, LongWords))
	{
		AddLine(ParagraphIndex, Begin, Begin + Length);
		Begin += Length;
	}
}

void FWrappedText::WrapRuns(int32 ParagraphIndex)
{
	const FStringView Text = (*Source.Paragraphs)[ParagraphIndex];
	TArray<int32> Places;
	bool bHasPlaces = false;
	int32 Begin = 0;
	while (Begin < Text.Len())
	{
		int32 End = FindEndOfFitting(ParagraphIndex, Begin);
		if (End < Text.Len())
		{
			// Most paragraphs fit, and need none.
			if (!bHasPlaces)
			{
				bHasPlaces = true;
				Places = Measure->FindLineBreakPlaces(Text);
			}
			End = WrappedText::FindLineEnd(*Measure, Text, Places, Begin, End, Source.WrappingPolicy);
		}
		AddLine(ParagraphIndex, Begin, End);
		Begin = End;
	}
}

int32 FWrappedText::FindEndOfFitting(int32 ParagraphIndex, int32 Begin) const
{
	// A run that is no longer is measured as a whole first: most fit.
	constexpr int32 ShortRun = 256;
	const FStringView Text = (*Source.Paragraphs)[ParagraphIndex];
	double Room = Source.WrapWidth;
	for (int32 Index = FindRun(ParagraphIndex, Begin); Index < GetNumRuns(ParagraphIndex); ++Index)
	{
		const FRun Run = GetRun(ParagraphIndex, Index);
		const int32 From = FMath::Max(Run.Begin, Begin);
		const FStringView Rest = Text.Mid(From, Run.End - From);
		double Width = Rest.Len() <= ShortRun ? Measure->Measure(Rest, *Run.Font).X : Room + 1.0;
		if (Width > Room)
		{
			const int32 NumFitting =
				Measure->FindLastWholeCharacterIndexBeforeOffset(Rest, *Run.Font, static_cast<float>(Room));
			const bool bNothingFits = NumFitting <= 1 && Measure->Measure(Rest.Left(NumFitting), *Run.Font).X > Room;
			if (bNothingFits || NumFitting < Rest.Len())
			{
				return FMath::Max(From + (bNothingFits ? 0 : NumFitting), Begin + 1);
			}
			Width = Measure->Measure(Rest, *Run.Font).X;
		}
		Room -= Width;
	}
	return Text.Len();
}

void FWrappedText::AddLine(int32 ParagraphIndex, int32 Begin, int32 End)
{
	FLine Line{ ParagraphIndex, Begin, End - Begin, 0.0f, 0.0f, Size.Y };
	float Ascent = 0.0f;
	float Descent = 0.0f;
	const int32 NumRuns = GetNumRuns(ParagraphIndex);
	for (int32 Index = FindRun(ParagraphIndex, Begin); Index < NumRuns; ++Index)
	{
		const FRun Run = GetRun(ParagraphIndex, Index);
		if (Run.Begin >= End && Run.Begin > Begin)
		{
			break;
		}
		const int32 From = FMath::Max(Run.Begin, Begin);
		const FVector2D RunSize = Measure->Measure(GetText(Line, From, FMath::Min(Run.End, End)), *Run.Font);
		const float RunDescent = -Measure->GetBaseline(*Run.Font);
		Line.Width += static_cast<float>(RunSize.X);
		Ascent = FMath::Max(Ascent, static_cast<float>(RunSize.Y) - RunDescent);
		Descent = FMath::Max(Descent, RunDescent);
	}
	Line.Height = (Ascent + Descent) * Source.LineHeightPercentage;
	Size = FVector2D(FMath::Max(Size.X, static_cast<double>(Line.Width)), Size.Y + Line.Height);
	Lines.Add(Line);
}

int32 FWrappedText::GetNumRuns(int32 ParagraphIndex) const
{
	return Source.Runs ? Source.Runs->GetLineModels()[ParagraphIndex].Runs.Num() : 1;
}

FWrappedText::FRun FWrappedText::GetRun(int32 ParagraphIndex, int32 RunIndex) const
{
	if (!Source.Runs)
	{
		return { 0, (*Source.Paragraphs)[ParagraphIndex].Len(), &Source.Font, nullptr };
	}
	const IRun& Run = *Source.Runs->GetLineModels()[ParagraphIndex].Runs[RunIndex].Run;
	const FTextRange Range = Run.GetTextRange();
	const FTextBlockStyle& Style = Run.GetStyle();
	return { Range.BeginIndex, Range.EndIndex, &Style.Font, &Style };
}

int32 FWrappedText::FindRun(int32 ParagraphIndex, int32 Offset) const
{
	return WrappedText::FindLast(
		GetNumRuns(ParagraphIndex), [&](int32 Index) { return GetRun(ParagraphIndex, Index).Begin <= Offset; });
}

void FWrappedText::FindLinesBetween(double Y, double EndY, int32& OutFirst, int32& OutCount) const
{
	OutFirst = 0;
	OutCount = 0;
	if (EndY > Y && EndY >= 0.0 && Y < Size.Y)
	{
		OutFirst = FindLineAt(Y);
		OutCount = FindLineAt(EndY) + 1 - OutFirst;
	}
}

int32 FWrappedText::FindLineAt(double Y) const
{
	return WrappedText::FindLast(Lines.Num(), [&](int32 Index) { return Lines[Index].Top <= Y; });
}

int32 FWrappedText::FindLine(int32 ParagraphIndex, int32 Offset) const
{
	return WrappedText::FindLast(Lines.Num(), [&](int32 Index) {
		const FLine& Line = Lines[Index];
		return Line.ParagraphIndex < ParagraphIndex || (Line.ParagraphIndex == ParagraphIndex && Line.Begin <= Offset);
	});
}

FStringView FWrappedText::GetText(const FLine& Line, int32 Begin, int32 End) const
{
	return FStringView((*Source.Paragraphs)[Line.ParagraphIndex]).Mid(Begin, End - Begin);
}

TArray<FWrappedText::FPiece> FWrappedText::GetPieces(const FLine& Line) const
{
	TArray<FPiece> Pieces;
	float Left = 0.0f;
	float Ascent = 0.0f;
	const int32 NumRuns = GetNumRuns(Line.ParagraphIndex);
	for (int32 Index = FindRun(Line.ParagraphIndex, Line.Begin); Index < NumRuns; ++Index)
	{
		const FRun Run = GetRun(Line.ParagraphIndex, Index);
		if (Run.Begin >= Line.End() && Run.Begin > Line.Begin)
		{
			break;
		}
		const int32 Begin = FMath::Max(Run.Begin, Line.Begin);
		const int32 End = FMath::Min(Run.End, Line.End());
		const bool bIsWholeLine = Begin == Line.Begin && End == Line.End();
		const float Width =
			bIsWholeLine ? Line.Width : static_cast<float>(Measure->Measure(GetText(Line, Begin, End), *Run.Font).X);
		const float Height = Measure->GetMaxCharacterHeight(*Run.Font);
		const float Baseline = Height + Measure->GetBaseline(*Run.Font);
		Pieces.Add(FPiece{ Begin, End, Left, Width, Height, Baseline, 0.0f, Run.Font, Run.Style });
		Left += Width;
		Ascent = FMath::Max(Ascent, Baseline);
	}
	for (FPiece& Piece : Pieces)
	{
		Piece.Top = Ascent - Piece.Baseline;
	}
	return Pieces;
}

float FWrappedText::GetCursorX(const FLine& Line, int32 Offset) const
{
	const TArray<FPiece> Pieces = GetPieces(Line);
	const FPiece& Piece =
		Pieces[WrappedText::FindLast(Pieces.Num(), [&](int32 Index) { return Pieces[Index].Begin <= Offset; })];
	const int32 Character = FMath::Clamp(Offset, Piece.Begin, Piece.End) - Piece.Begin;
	return Piece.Left +
		   Measure->FindOffsetOfCharacterIndex(GetText(Line, Piece.Begin, Piece.End), *Piece.Font, Character);
}

int32 FWrappedText::FindOffset(const FLine& Line, float X) const
{
	const TArray<FPiece> Pieces = GetPieces(Line);
	const FPiece& Piece =
		Pieces[WrappedText::FindLast(Pieces.Num(), [&](int32 Index) { return Pieces[Index].Left <= X; })];
	return Piece.Begin +
		   Measure->FindCharacterIndexAtOffset(GetText(Line, Piece.Begin, Piece.End), *Piece.Font, X - Piece.Left);
}

TArray<FSlateFontMeasure::FSpan> FWrappedText::FindSpans(const FLine& Line, int32 Begin, int32 End) const
{
	TArray<FSlateFontMeasure::FSpan> Spans;
	for (const FPiece& Piece : GetPieces(Line))
	{
		const int32 From = FMath::Max(Begin, Piece.Begin);
		const int32 To = FMath::Min(End, Piece.End);
		if (From >= To)
		{
			continue;
		}
		for (const FSlateFontMeasure::FSpan& Span : Measure->FindSpansOfCharacters(
				 GetText(Line, Piece.Begin, Piece.End), *Piece.Font, From - Piece.Begin, To - Piece.Begin))
		{
			Spans.Add({ Piece.Left + Span.Left, Piece.Left + Span.Right });
		}
	}
	return Spans;
}
