#include "Fonts/FontMeasure.h"

namespace FontMeasure
{
// A point is 1/72 inch, a Slate unit 1/96.
constexpr float UnitsPerPoint = 96.0f / 72.0f;
// Average advance and line height of common sans-serif fonts, as shares of the em.
constexpr float CellWidthInEms = 0.55f;
constexpr float LineHeightInEms = 1.2f;
constexpr float DescentInEms = 0.25f;

/** How much of a text goes into its first line when so many characters fit, which are not all. */
static int32 FindLineEnd(FStringView Text, int32 NumFitting, FSlateFontMeasure::ELongWords LongWords)
{
	// After the last space that fits (or that is the first not to fit); inside a word if it has a line for itself.
	for (int32 Index = NumFitting; Index > 0; --Index)
	{
		if (FChar::IsWhitespace(Text[Index]))
		{
			return Index + 1;
		}
	}
	if (LongWords == FSlateFontMeasure::ELongWords::Break)
	{
		return NumFitting;
	}
	int32 End = NumFitting;
	while (End < Text.Len() && !FChar::IsWhitespace(Text[End - 1]))
	{
		++End;
	}
	return End;
}
}

bool FSlateFontInfo::operator==(const FSlateFontInfo& Other) const
{
	return FontObject == Other.FontObject && CompositeFont == Other.CompositeFont &&
		   TypefaceFontName == Other.TypefaceFontName && Size == Other.Size && LetterSpacing == Other.LetterSpacing &&
		   SkewAmount == Other.SkewAmount && OutlineSettings == Other.OutlineSettings;
}

int32 FSlateFontMeasure::FindCharacterIndexAtOffset(
	FStringView Text, const FSlateFontInfo& FontInfo, float HorizontalOffset) const
{
	int32 Low = 0;
	int32 High = Text.Len();
	while (Low < High)
	{
		const int32 Middle = (Low + High) / 2;
		const double Left = Measure(Text.Left(Middle), FontInfo).X;
		const double Right = Measure(Text.Left(Middle + 1), FontInfo).X;
		if (HorizontalOffset < (Left + Right) / 2.0)
		{
			High = Middle;
		}
		else
		{
			Low = Middle + 1;
		}
	}
	return Low;
}

float FSlateFontMeasure::FindOffsetOfCharacterIndex(FStringView Text, const FSlateFontInfo& FontInfo, int32 Index) const
{
	return static_cast<float>(Measure(Text.Left(Index), FontInfo).X);
}

TArray<FSlateFontMeasure::FSpan> FSlateFontMeasure::FindSpansOfCharacters(
	FStringView Text, const FSlateFontInfo& FontInfo, int32 Begin, int32 End) const
{
	return { { FindOffsetOfCharacterIndex(Text, FontInfo, Begin), FindOffsetOfCharacterIndex(Text, FontInfo, End) } };
}

bool FSlateFontMeasure::IsCaretStop(FStringView Text, int32 Index) const
{
	constexpr TCHAR FirstLowSurrogate = 0xDC00;
	constexpr TCHAR LastLowSurrogate = 0xDFFF;
	const bool bInside = Index > 0 && Index < Text.Len();
	return !bInside || Text[Index] < FirstLowSurrogate || Text[Index] > LastLowSurrogate;
}

TArray<int32> FSlateFontMeasure::FindLineBreaks(
	FStringView Text, const FSlateFontInfo& FontInfo, float WrapWidth, ELongWords LongWords) const
{
	TArray<int32> Lengths;
	int32 Begin = 0;
	while (true)
	{
		const FStringView Rest = Text.Mid(Begin, Text.Len() - Begin);
		const int32 NumFitting = FindLastWholeCharacterIndexBeforeOffset(Rest, FontInfo, WrapWidth);
		if (NumFitting >= Rest.Len())
		{
			Lengths.Add(Rest.Len());
			return Lengths;
		}
		const int32 NumTaken = FontMeasure::FindLineEnd(Rest, NumFitting, LongWords);
		Lengths.Add(NumTaken);
		Begin += NumTaken;
		// Behind a space that did not fit there is a line, for the cursor; behind a word there is none.
		if (Begin == Text.Len() && !FChar::IsWhitespace(Text[Begin - 1]))
		{
			return Lengths;
		}
	}
}

TArray<int32> FSlateFontMeasure::FindLineBreakPlaces(FStringView Text) const
{
	TArray<int32> Places;
	for (int32 Index = 1; Index < Text.Len(); ++Index)
	{
		if (FChar::IsWhitespace(Text[Index - 1]))
		{
			Places.Add(Index);
		}
	}
	return Places;
}

int32 FSlateFontMeasure::FindLastWholeCharacterIndexBeforeOffset(
	FStringView Text, const FSlateFontInfo& FontInfo, float Width) const
{
	// Ever longer pieces first: a line is short, but the text may be a million characters.
	constexpr int32 FirstPiece = 64;
	int32 High = FMath::Min(FirstPiece, Text.Len());
	while (High < Text.Len() && Measure(Text.Left(High), FontInfo).X <= Width)
	{
		High = High <= Text.Len() / 2 ? High * 2 : Text.Len();
	}
	int32 Low = 1;
	while (Low < High)
	{
		const int32 Middle = (Low + High + 1) / 2;
		if (Measure(Text.Left(Middle), FontInfo).X <= Width)
		{
			Low = Middle;
		}
		else
		{
			High = Middle - 1;
		}
	}
	return FMath::Min(Low, Text.Len());
}

FVector2D FFixedFontMeasure::Measure(FStringView Text, const FSlateFontInfo& FontInfo) const
{
	const float CellWidth = FontInfo.Size * FontMeasure::UnitsPerPoint * FontMeasure::CellWidthInEms;
	return FVector2D(CellWidth * static_cast<float>(Text.Len()), GetMaxCharacterHeight(FontInfo));
}

float FFixedFontMeasure::GetMaxCharacterHeight(const FSlateFontInfo& FontInfo) const
{
	return FontInfo.Size * FontMeasure::UnitsPerPoint * FontMeasure::LineHeightInEms;
}

float FFixedFontMeasure::GetBaseline(const FSlateFontInfo& FontInfo) const
{
	return -FontInfo.Size * FontMeasure::UnitsPerPoint * FontMeasure::DescentInEms;
}
