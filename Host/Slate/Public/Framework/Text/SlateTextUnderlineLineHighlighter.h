#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"
#include "Framework/Text/ILineHighlighter.h"
#include "Styling/SlateBrush.h"
#include "Styling/SlateColor.h"

/** A line along the text, in the text's colour tinted by a brush. */
class ISlateTextLineHighlighter : public ILineHighlighter
{
protected:
	ISlateTextLineHighlighter(
		const FSlateBrush& InLineBrush, const FSlateFontInfo& InFontInfo, const FSlateColor& InColorAndOpacity);
	/** The top of the line above the baseline, as a share of the font's height. */
	virtual float GetRise() const = 0;

private:
	virtual void Paint(const FGeometry& StretchGeometry, float Baseline, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle) const override;

	const FSlateBrush LineBrush;
	const FSlateFontInfo FontInfo;
	const FSlateColor ColorAndOpacity;
};

class FSlateTextUnderlineLineHighlighter final : public ISlateTextLineHighlighter
{
public:
	static const int32 DefaultZIndex = 0;

	/** Everything is copied. Shadows are not drawn. */
	static TSharedRef<FSlateTextUnderlineLineHighlighter> Create(const FSlateBrush& InLineBrush,
		const FSlateFontInfo& InFontInfo, const FSlateColor InColorAndOpacity, const FVector2D InShadowOffset,
		const FLinearColor InShadowColorAndOpacity);

private:
	using ISlateTextLineHighlighter::ISlateTextLineHighlighter;
	virtual float GetRise() const override;
};

class FSlateTextStrikeLineHighlighter final : public ISlateTextLineHighlighter
{
public:
	static const int32 DefaultZIndex = 1;

	/** Everything is copied. Shadows are not drawn. */
	static TSharedRef<FSlateTextStrikeLineHighlighter> Create(const FSlateBrush& InLineBrush,
		const FSlateFontInfo& InFontInfo, const FSlateColor InColorAndOpacity, const FVector2D InShadowOffset,
		const FLinearColor InShadowColorAndOpacity);

private:
	using ISlateTextLineHighlighter::ISlateTextLineHighlighter;
	virtual float GetRise() const override;
};
