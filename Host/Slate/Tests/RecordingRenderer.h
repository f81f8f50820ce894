#pragma once

#include "CoreMinimal.h"
#include "Fonts/FontMeasure.h"
#include "Rendering/DrawElements.h"
#include "Rendering/SlateRenderer.h"

/** Keeps what was drawn in the last frame. */
class FRecordingRenderer final : public FSlateRenderer
{
public:
	FRecordingRenderer()
		: FSlateRenderer(MakeShared<FFixedFontMeasure>())
	{
	}
	virtual void DrawWindow(const TSharedRef<SWindow>& Window, FSlateWindowElementList& DrawElements) override
	{
		Boxes.Empty();
		Texts.Empty();
		for (const FSlateDrawElement& Element : DrawElements.GetElements())
		{
			(Element.Text.IsEmpty() ? Boxes : Texts).Add(Element);
		}
	}

	TArray<FSlateDrawElement> Boxes;
	TArray<FSlateDrawElement> Texts;
};
