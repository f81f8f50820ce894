#pragma once

#include "CoreMinimal.h"
#include "Layout/SlateRect.h"
#include "Rendering/SlateLayoutTransform.h"
#include "Types/SlateVector2.h"

/**
 * Where a widget lies and how large it is. "Local" is the widget's own space with its top left corner at (0, 0),
 * "absolute" is that of the screen.
 */
struct FGeometry
{
	/** No size, in the corner of the screen: what a widget has before it was first painted. */
	FGeometry() = default;

	static FGeometry MakeRoot(const FVector2D& InLocalSize, const FSlateLayoutTransform& LayoutTransform);
	/** A part of this one. The transform takes the child's space to this one's. */
	FGeometry MakeChild(const FVector2D& InLocalSize, const FSlateLayoutTransform& LayoutTransform) const;

	UE::Slate::FDeprecateVector2DResult GetLocalSize() const { return UE::Slate::FDeprecateVector2DResult(Size); }
	UE::Slate::FDeprecateVector2DResult GetAbsolutePosition() const;
	UE::Slate::FDeprecateVector2DResult AbsoluteToLocal(
		const UE::Slate::FDeprecateVector2DParameter& AbsoluteCoordinate) const;
	UE::Slate::FDeprecateVector2DResult LocalToAbsolute(
		const UE::Slate::FDeprecateVector2DParameter& LocalCoordinate) const;
	bool IsUnderLocation(const UE::Slate::FDeprecateVector2DParameter& AbsoluteCoordinate) const;
	/** In absolute space. */
	FSlateRect GetLayoutBoundingRect() const;
	float GetScale() const { return Scale; }

	bool operator==(const FGeometry& Other) const;

private:
	FVector2D Size = FVector2D(0.0, 0.0);
	FVector2D AbsolutePosition = FVector2D(0.0, 0.0);
	float Scale = 1.0f;
};
