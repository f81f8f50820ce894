#pragma once

#include "CoreMinimal.h"
#include "Layout/Margin.h"
#include "Styling/SlateColor.h"
#include "Types/SlateVector2.h"

namespace ESlateBrushDrawType
{
enum Type : int
{
	NoDrawType,
	Box,
	Border,
	Image,
	RoundedBox,
};
}

namespace ESlateBrushTileType
{
enum Type : int
{
	NoTile,
	Horizontal,
	Vertical,
	Both,
};
}

namespace ESlateBrushImageType
{
enum Type : int
{
	NoImage,
	FullColor,
	Linear,
	Vector,
};
}

/** The outline and the corners of a rounded box, in Slate units. */
struct FSlateBrushOutlineSettings
{
	/** Top left, top right, bottom right, bottom left. */
	float CornerRadii[4] = { 0.0f, 0.0f, 0.0f, 0.0f };
	FSlateColor Color = FLinearColor::Transparent;
	float Width = 0.0f;
};

/** How a rectangle is filled: with an image, a colour, a box with corners, or not at all. Made by its derived classes.
 */
struct FSlateBrush
{
	FSlateBrush() = default;
	virtual ~FSlateBrush() = default;

	UE::Slate::FDeprecateVector2DResult GetImageSize() const { return UE::Slate::FDeprecateVector2DResult(ImageSize); }
	/** The full path of an image's file, NAME_None for a brush without one. */
	FName GetResourceName() const { return ResourceName; }
	ESlateBrushImageType::Type GetImageType() const { return ImageType; }
	FLinearColor GetTint(const FWidgetStyle& InWidgetStyle) const { return TintColor.GetColor(InWidgetStyle); }

	FVector2D ImageSize = FVector2D(32.0, 32.0);
	FMargin Margin;
	FSlateColor TintColor = FLinearColor::White;
	FSlateBrushOutlineSettings OutlineSettings;
	ESlateBrushDrawType::Type DrawAs = ESlateBrushDrawType::Image;
	ESlateBrushTileType::Type Tiling = ESlateBrushTileType::NoTile;
	ESlateBrushImageType::Type ImageType = ESlateBrushImageType::NoImage;

protected:
	FSlateBrush(ESlateBrushDrawType::Type InDrawType, const FName InResourceName, const FMargin& InMargin,
		ESlateBrushTileType::Type InTiling, ESlateBrushImageType::Type InImageType, const FVector2D& InImageSize,
		const FSlateColor& InTint)
		: ImageSize(InImageSize)
		, Margin(InMargin)
		, TintColor(InTint)
		, DrawAs(InDrawType)
		, Tiling(InTiling)
		, ImageType(InImageType)
		, ResourceName(InResourceName)
	{
	}

	FName ResourceName;
};
