#pragma once

#include "GenericPlatform/GenericWindow.h"
#include "ImageCache.h"
#include "PangoFonts.h"
#include "Rendering/DrawElements.h"
#include "Rendering/SlateRenderer.h"

/** A window of the operating system that can be drawn into. */
class IPaintedWindow : public FGenericWindow
{
public:
	/** The pixels of the window, as large as it is now; null when it cannot be drawn into at the moment. */
	virtual cairo_surface_t* LockSurface() = 0;
	/** Shows the pixels that have changed; positions count from the window's corner. */
	virtual void ShowSurface(const FSlateRect& Changed) = 0;

	/** What is shown now. Empty when all of it has to be drawn. */
	TArray<FSlateDrawElement> Shown;
};

/**
 * Draws what has changed since the last frame: elements that are as they were leave their pixels alone, and a window in
 * which nothing has changed is not touched.
 */
class FCairoRenderer final : public FSlateRenderer
{
public:
	FCairoRenderer();

	virtual void ReloadTextureResources() override;
	virtual void DrawWindow(const TSharedRef<SWindow>& Window, FSlateWindowElementList& DrawElements) override;

	/** Draws all elements into a surface that begins at a place of the screen. */
	void DrawAll(cairo_surface_t* Surface, const FVector2D& Origin, const TArray<FSlateDrawElement>& Elements,
		const FSlateRect& Area);

private:
	FPangoFonts& Fonts;
	FImageCache Images;
};

namespace CairoRenderer
{
/** Where two frames differ, in absolute space; an empty rectangle when they do not. */
FSlateRect FindChange(const TArray<FSlateDrawElement>& Before, const TArray<FSlateDrawElement>& After);
}
