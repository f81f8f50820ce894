#pragma once

#include "CoreMinimal.h"
#include "Layout/Geometry.h"
#include "Layout/SlateRect.h"

class FSlateWindowElementList;
class FWidgetStyle;
class SMultiLineEditableText;

/** Draws something over or under a stretch of a line. */
class ILineHighlighter
{
public:
	virtual ~ILineHighlighter() = default;

private:
	friend class SMultiLineEditableText;

	/**
	 * @param StretchGeometry  as wide as what is marked, as high as its line's text
	 * @param Baseline         below the top of the geometry, in its own units
	 */
	virtual void Paint(const FGeometry& StretchGeometry, float Baseline, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle) const = 0;
};
