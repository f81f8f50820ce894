#pragma once

#include "HAL/Platform.h"

/** A point on a grid. */
struct FIntPoint
{
	int32 X = 0;
	int32 Y = 0;

	constexpr FIntPoint() = default;
	constexpr FIntPoint(int32 InX, int32 InY)
		: X(InX)
		, Y(InY)
	{
	}
	constexpr explicit FIntPoint(EForceInit) {}

	static const FIntPoint ZeroValue;

	constexpr FIntPoint operator+(const FIntPoint& Other) const { return { X + Other.X, Y + Other.Y }; }
	constexpr FIntPoint operator-(const FIntPoint& Other) const { return { X - Other.X, Y - Other.Y }; }
	constexpr bool operator==(const FIntPoint& Other) const = default;
};

inline constexpr FIntPoint FIntPoint::ZeroValue = { 0, 0 };
