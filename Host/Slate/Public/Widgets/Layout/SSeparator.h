#pragma once

#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/Layout/SBorder.h"

/** A line between widgets. */
class SSeparator : public SBorder
{
public:
	SLATE_BEGIN_ARGS(SSeparator)
		: _SeparatorImage(FAppStyle::GetBrush("Separator"))
		, _Orientation(Orient_Horizontal)
		, _Thickness(3.0f)
	{
	}
	SLATE_ARGUMENT(const FSlateBrush*, SeparatorImage)
	SLATE_ARGUMENT(EOrientation, Orientation)
	/** In Slate units. */
	SLATE_ARGUMENT(float, Thickness)
	SLATE_ATTRIBUTE(FSlateColor, ColorAndOpacity)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;

private:
	EOrientation Orientation = Orient_Horizontal;
	float Thickness = 0.0f;
};
