#pragma once

#include "CoreMinimal.h"
#include "Styling/SlateBrush.h"

/** A raster image. A missing file is noticed when the renderer loads it, not here. */
struct FSlateImageBrush : public FSlateBrush
{
	FSlateImageBrush(const FName InImageName, const UE::Slate::FDeprecateVector2DParameter& InImageSize,
		const FSlateColor& InTint = FSlateColor(FLinearColor::White),
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile,
		ESlateBrushImageType::Type InImageType = ESlateBrushImageType::FullColor)
		: FSlateBrush(
			  ESlateBrushDrawType::Image, InImageName, FMargin(0.0f), InTiling, InImageType, InImageSize, InTint)
	{
	}
	/** @param InImageName  full path of the file */
	FSlateImageBrush(const FString& InImageName, const UE::Slate::FDeprecateVector2DParameter& InImageSize,
		const FSlateColor& InTint = FSlateColor(FLinearColor::White),
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile,
		ESlateBrushImageType::Type InImageType = ESlateBrushImageType::FullColor)
		: FSlateImageBrush(FName(InImageName), InImageSize, InTint, InTiling, InImageType)
	{
	}
};

/** A vector image. */
struct FSlateVectorImageBrush : public FSlateImageBrush
{
	/** @param InImageName  full path of the file, ending in ".svg" */
	FSlateVectorImageBrush(const FString& InImageName, const UE::Slate::FDeprecateVector2DParameter& InImageSize,
		const FSlateColor& InTint = FSlateColor(FLinearColor::White),
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile)
		: FSlateImageBrush(InImageName, InImageSize, InTint, InTiling, ESlateBrushImageType::Vector)
	{
	}
};
