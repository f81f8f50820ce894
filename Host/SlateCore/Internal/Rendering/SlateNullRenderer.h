#pragma once

#include "CoreMinimal.h"
#include "Rendering/SlateRenderer.h"

/** Draws nothing and measures text with fixed metrics: the renderer of an editor without a window. */
class FSlateNullRenderer final : public FSlateRenderer
{
public:
	FSlateNullRenderer();
	virtual void DrawWindow(const TSharedRef<SWindow>& Window, FSlateWindowElementList& DrawElements) override {}
};
