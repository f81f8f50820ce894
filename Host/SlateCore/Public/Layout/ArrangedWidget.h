#pragma once

#include "CoreMinimal.h"
#include "Layout/Geometry.h"

class SWidget;

/** A widget with the place that its parent gave it. */
class FArrangedWidget
{
public:
	FArrangedWidget(TSharedRef<SWidget> InWidget, const FGeometry& InGeometry)
		: Geometry(InGeometry)
		, Widget(InWidget)
	{
	}

	FGeometry Geometry;
	TSharedRef<SWidget> Widget;
};
