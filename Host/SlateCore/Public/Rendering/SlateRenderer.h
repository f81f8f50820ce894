#pragma once

#include "CoreMinimal.h"

class FSlateFontMeasure;
class FSlateWindowElementList;
class ISlateStyle;
class SWindow;

/** Turns what widgets have drawn into pixels, and keeps the images that they draw. */
class FSlateRenderer
{
public:
	explicit FSlateRenderer(TSharedRef<FSlateFontMeasure> InFontMeasure)
		: FontMeasure(InFontMeasure)
	{
	}
	virtual ~FSlateRenderer() = default;
	UE_NONCOPYABLE(FSlateRenderer)

	/** Reloads the images of all registered styles. Slow. */
	virtual void ReloadTextureResources();
	/** Loads the images of one style. One whose file is missing is logged once and draws nothing. */
	virtual void LoadStyleResources(const ISlateStyle& Style);
	/** Shows what the widgets of one window have drawn. */
	virtual void DrawWindow(const TSharedRef<SWindow>& Window, FSlateWindowElementList& DrawElements) = 0;

	TSharedRef<FSlateFontMeasure> GetFontMeasureService() const { return FontMeasure; }

private:
	const TSharedRef<FSlateFontMeasure> FontMeasure;
	TSet<FString> ReportedFiles;
};
