#pragma once

#include "ImageCache.h"
#include "PangoFonts.h"
#include "Rendering/DrawElements.h"

/** Draws single elements with Cairo. */
class FCairoPainter
{
public:
	/** Origin: where the window's top left corner lies in absolute space. */
	FCairoPainter(cairo_t* InCairo, const FVector2D& InOrigin, const FPangoFonts& InFonts, FImageCache& InImages)
		: Cairo(InCairo)
		, Origin(InOrigin)
		, Fonts(InFonts)
		, Images(InImages)
	{
	}

	void Draw(const FSlateDrawElement& Element);

private:
	void DrawShape(const FSlateDrawElement& Element);
	/** Places: the element's points, in pixels. */
	void DrawThinLines(const FSlateDrawElement& Element, const TArray<FVector2D>& Places, double Width);
	void DrawText(const FSlateDrawElement& Element);
	void DrawBrush(const FSlateDrawElement& Element);
	void DrawImage(const FSlateDrawElement& Element);
	void DrawRoundedBox(const FSlateDrawElement& Element);
	void AddRectangle(const FSlateRect& Rect);
	void SetColor(const FLinearColor& Color);

	cairo_t* const Cairo;
	const FVector2D Origin;
	const FPangoFonts& Fonts;
	FImageCache& Images;
};
