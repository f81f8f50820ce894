#pragma once

#include "Math/Vector2D.h"

/** An upright rectangle in the plane. */
struct FBox2D
{
	FBox2D() = default;
	FBox2D(const FVector2D& InMin, const FVector2D& InMax)
		: Min(InMin)
		, Max(InMax)
		, bIsValid(true)
	{
	}

	FVector2D GetSize() const { return Max - Min; }
	FVector2D GetCenter() const { return (Min + Max) * 0.5; }

	FVector2D Min = FVector2D(0.0, 0.0);
	FVector2D Max = FVector2D(0.0, 0.0);
	bool bIsValid = false;
};
