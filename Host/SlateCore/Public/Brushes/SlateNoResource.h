#pragma once

#include "CoreMinimal.h"
#include "Styling/SlateBrush.h"

/** Draws nothing, but has a size. */
struct FSlateNoResource : public FSlateBrush
{
	explicit FSlateNoResource(const UE::Slate::FDeprecateVector2DParameter& InImageSize = FVector2D(0.0, 0.0))
		: FSlateBrush(ESlateBrushDrawType::NoDrawType, NAME_None, FMargin(0.0f), ESlateBrushTileType::NoTile,
			  ESlateBrushImageType::NoImage, InImageSize, FSlateColor(FLinearColor::White))
	{
	}
};
