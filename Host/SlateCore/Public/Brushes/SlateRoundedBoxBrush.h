#pragma once

#include "CoreMinimal.h"
#include "Styling/SlateBrush.h"

/** One colour in a box with round corners and an outline. */
struct FSlateRoundedBoxBrush : public FSlateBrush
{
	FSlateRoundedBoxBrush(const FSlateColor& InColor, float InRadius,
		const FSlateColor& InOutlineColor = FSlateColor(FLinearColor::Transparent), float InOutlineWidth = 0.0f)
		: FSlateBrush(ESlateBrushDrawType::RoundedBox, NAME_None, FMargin(0.0f), ESlateBrushTileType::NoTile,
			  ESlateBrushImageType::NoImage, FVector2D(1.0, 1.0), InColor)
	{
		for (float& Radius : OutlineSettings.CornerRadii)
		{
			Radius = InRadius;
		}
		OutlineSettings.Color = InOutlineColor;
		OutlineSettings.Width = InOutlineWidth;
	}
};
