#include "Framework/Text/SlateTextUnderlineLineHighlighter.h"

#include "Application/SlateApplicationBase.h"
#include "Fonts/FontMeasure.h"
#include "Rendering/DrawElements.h"
#include "Rendering/SlateRenderer.h"

namespace TextLineHighlighter
{
// Shares of a line's height, as common sans-serif fonts have them.
constexpr float Thickness = 0.05f;
constexpr float UnderlineRise = -0.06f;
constexpr float StrikeRise = 0.24f;
}

ISlateTextLineHighlighter::ISlateTextLineHighlighter(
	const FSlateBrush& InLineBrush, const FSlateFontInfo& InFontInfo, const FSlateColor& InColorAndOpacity)
	: LineBrush(InLineBrush)
	, FontInfo(InFontInfo)
	, ColorAndOpacity(InColorAndOpacity)
{
}

void ISlateTextLineHighlighter::Paint(const FGeometry& StretchGeometry, float Baseline, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle) const
{
	const float FontHeight =
		FSlateApplicationBase::Get().GetRenderer()->GetFontMeasureService()->GetMaxCharacterHeight(FontInfo);
	const FVector2D Size(
		StretchGeometry.GetLocalSize().X, FMath::Max(FontHeight * TextLineHighlighter::Thickness, 1.0f));
	const FVector2D Place(0.0, Baseline - GetRise() * FontHeight);
	FSlateDrawElement::MakeBox(OutDrawElements, LayerId, StretchGeometry.MakeChild(Size, FSlateLayoutTransform(Place)),
		MyCullingRect, &LineBrush,
		InWidgetStyle.GetColorAndOpacityTint() * ColorAndOpacity.GetColor(InWidgetStyle) *
			LineBrush.GetTint(InWidgetStyle));
}

TSharedRef<FSlateTextUnderlineLineHighlighter> FSlateTextUnderlineLineHighlighter::Create(
	const FSlateBrush& InLineBrush, const FSlateFontInfo& InFontInfo, const FSlateColor InColorAndOpacity,
	const FVector2D InShadowOffset, const FLinearColor InShadowColorAndOpacity)
{
	return MakeShareable(new FSlateTextUnderlineLineHighlighter(InLineBrush, InFontInfo, InColorAndOpacity));
}

float FSlateTextUnderlineLineHighlighter::GetRise() const
{
	return TextLineHighlighter::UnderlineRise;
}

TSharedRef<FSlateTextStrikeLineHighlighter> FSlateTextStrikeLineHighlighter::Create(const FSlateBrush& InLineBrush,
	const FSlateFontInfo& InFontInfo, const FSlateColor InColorAndOpacity, const FVector2D InShadowOffset,
	const FLinearColor InShadowColorAndOpacity)
{
	return MakeShareable(new FSlateTextStrikeLineHighlighter(InLineBrush, InFontInfo, InColorAndOpacity));
}

float FSlateTextStrikeLineHighlighter::GetRise() const
{
	return TextLineHighlighter::StrikeRise;
}
