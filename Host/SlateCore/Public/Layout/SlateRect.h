#pragma once

#include "CoreMinimal.h"

/** A rectangle in one coordinate space, usually that of the screen. */
struct FSlateRect
{
	float Left = 0.0f;
	float Top = 0.0f;
	float Right = 0.0f;
	float Bottom = 0.0f;

	FSlateRect() = default;
	FSlateRect(float InLeft, float InTop, float InRight, float InBottom)
		: Left(InLeft)
		, Top(InTop)
		, Right(InRight)
		, Bottom(InBottom)
	{
	}
	FSlateRect(const FVector2D& InTopLeft, const FVector2D& InBottomRight)
		: FSlateRect(static_cast<float>(InTopLeft.X), static_cast<float>(InTopLeft.Y),
			  static_cast<float>(InBottomRight.X), static_cast<float>(InBottomRight.Y))
	{
	}

	FVector2D GetTopLeft() const { return FVector2D(Left, Top); }
	FVector2D GetSize() const { return FVector2D(Right - Left, Bottom - Top); }
	bool ContainsPoint(const FVector2D& Point) const
	{
		return Point.X >= Left && Point.X < Right && Point.Y >= Top && Point.Y < Bottom;
	}
	/** Touching edges count: a widget without a size still lies in its place. */
	static bool DoRectanglesIntersect(const FSlateRect& A, const FSlateRect& B)
	{
		return A.Left <= B.Right && B.Left <= A.Right && A.Top <= B.Bottom && B.Top <= A.Bottom;
	}
	/** Empty, but not inverted, when the two do not meet. */
	FSlateRect IntersectionWith(const FSlateRect& Other) const;

	bool operator==(const FSlateRect& Other) const = default;
};
