#include "Framework/Text/WrappedText.h"

#include "Application/SlateApplicationBase.h"
#include "Fonts/FontMeasure.h"
#include "Rendering/SlateRenderer.h"

TArray<FString> FWrappedText::SplitIntoParagraphs(const FString& Text)
{
	TArray<FString> Paragraphs;
	int32 Begin = 0;
	for (int32 Index = 0; Index < Text.Len(); ++Index)
	{
		if (Text[Index] != TEXT('\n') && Text[Index] != TEXT('\r'))
		{
			continue;
		}
		Paragraphs.Add(Text.Mid(Begin, Index - Begin));
		if (Text[Index] == TEXT('\r') && Index + 1 < Text.Len() && Text[Index + 1] == TEXT('\n'))
		{
			++Index;
		}
		Begin = Index + 1;
	}
	Paragraphs.Add(Text.Mid(Begin));
	return Paragraphs;
}

void FWrappedText::Update(const TArray<FString>& Paragraphs, const FSlateFontInfo& Font, float WrapWidth)
{
	const TSharedRef<FSlateFontMeasure> Measure = FSlateApplicationBase::Get().GetRenderer()->GetFontMeasureService();
	Lines.Reset();
	LineHeight = Measure->GetMaxCharacterHeight(Font);
	Size = FVector2D(0.0, 0.0);
	for (int32 Index = 0; Index < Paragraphs.Num(); ++Index)
	{
		WrapParagraph(Paragraphs[Index], Index, Font, WrapWidth);
	}
	for (FLine& Line : Lines)
	{
		const FStringView Shown = FStringView(Paragraphs[Line.ParagraphIndex]).Mid(Line.Begin, Line.Length);
		Line.Width = static_cast<float>(Measure->Measure(Shown, Font).X);
		Size.X = FMath::Max(Size.X, static_cast<double>(Line.Width));
	}
	Size.Y = static_cast<double>(LineHeight) * Lines.Num();
}

void FWrappedText::WrapParagraph(
	const FString& Paragraph, int32 ParagraphIndex, const FSlateFontInfo& Font, float WrapWidth)
{
	if (WrapWidth <= 0.0f)
	{
		Lines.Add(FLine{ ParagraphIndex, 0, Paragraph.Len(), 0.0f });
		return;
	}
	const TSharedRef<FSlateFontMeasure> Measure = FSlateApplicationBase::Get().GetRenderer()->GetFontMeasureService();
	int32 Begin = 0;
	for (const int32 Length : Measure->FindLineBreaks(Paragraph, Font, WrapWidth))
	{
		Lines.Add(FLine{ ParagraphIndex, Begin, Length, 0.0f });
		Begin += Length;
	}
}

void FWrappedText::FindLinesBetween(float Y, float EndY, int32& OutFirst, int32& OutCount) const
{
	OutFirst = 0;
	OutCount = 0;
	if (LineHeight > 0.0f && EndY > Y)
	{
		const float LastLine = static_cast<float>(Lines.Num());
		OutFirst = static_cast<int32>(FMath::Clamp(Y / LineHeight, 0.0f, LastLine));
		OutCount = static_cast<int32>(FMath::Clamp(EndY / LineHeight + 1.0f, 0.0f, LastLine)) - OutFirst;
	}
}

int32 FWrappedText::FindLine(int32 ParagraphIndex, int32 Offset) const
{
	// The last line that does not begin behind the place.
	int32 Low = 0;
	int32 High = Lines.Num();
	while (High - Low > 1)
	{
		const int32 Middle = (Low + High) / 2;
		const FLine& Line = Lines[Middle];
		const bool bBegun =
			Line.ParagraphIndex < ParagraphIndex || (Line.ParagraphIndex == ParagraphIndex && Line.Begin <= Offset);
		(bBegun ? Low : High) = Middle;
	}
	return Low;
}
