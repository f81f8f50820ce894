#pragma once

#include "CoreMinimal.h"
#include "Types/SlateEnums.h"

/** Space around something, in Slate units. */
struct FMargin
{
	float Left = 0.0f;
	float Top = 0.0f;
	float Right = 0.0f;
	float Bottom = 0.0f;

	FMargin() = default;
	FMargin(float UniformMargin)
		: FMargin(UniformMargin, UniformMargin)
	{
	}
	FMargin(float Horizontal, float Vertical)
		: Left(Horizontal)
		, Top(Vertical)
		, Right(Horizontal)
		, Bottom(Vertical)
	{
	}
	FMargin(double InLeft, double InTop, double InRight, double InBottom)
		: Left(static_cast<float>(InLeft))
		, Top(static_cast<float>(InTop))
		, Right(static_cast<float>(InRight))
		, Bottom(static_cast<float>(InBottom))
	{
	}
	explicit FMargin(const FVector2D& InVector)
		: FMargin(static_cast<float>(InVector.X), static_cast<float>(InVector.Y))
	{
	}

	FVector2D GetTopLeft() const { return FVector2D(Left, Top); }
	FVector2D GetDesiredSize() const { return FVector2D(Left + Right, Top + Bottom); }
	template <EOrientation Orientation>
	float GetTotalSpaceAlong() const
	{
		return Orientation == Orient_Horizontal ? Left + Right : Top + Bottom;
	}

	bool operator==(const FMargin& Other) const = default;
	friend FMargin operator+(const FMargin& A, const FMargin& B)
	{
		return FMargin(A.Left + B.Left, A.Top + B.Top, A.Right + B.Right, A.Bottom + B.Bottom);
	}
};
