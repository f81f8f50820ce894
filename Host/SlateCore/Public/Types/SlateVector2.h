#pragma once

#include "CoreMinimal.h"

namespace UE::Slate
{

/**
 * What Slate answers when asked for a size or a position, in Slate units. Assign it to an FVector2D; it is not one, so
 * that `auto` does not spread a type which the engine changed once and may change again.
 */
struct FDeprecateVector2DResult
{
	float X = 0.0f;
	float Y = 0.0f;

	FDeprecateVector2DResult() = default;
	explicit FDeprecateVector2DResult(const FVector2D& Vector)
		: X(static_cast<float>(Vector.X))
		, Y(static_cast<float>(Vector.Y))
	{
	}

	operator FVector2D() const { return FVector2D(X, Y); }
	operator FVector2f() const { return FVector2f(X, Y); }
};

/** What Slate accepts as a size or a position. */
struct FDeprecateVector2DParameter
{
	double X = 0.0;
	double Y = 0.0;

	FDeprecateVector2DParameter() = default;
	FDeprecateVector2DParameter(const FVector2D& Vector)
		: X(Vector.X)
		, Y(Vector.Y)
	{
	}
	FDeprecateVector2DParameter(const FVector2f& Vector)
		: X(Vector.X)
		, Y(Vector.Y)
	{
	}
	FDeprecateVector2DParameter(const FDeprecateVector2DResult& Vector)
		: X(Vector.X)
		, Y(Vector.Y)
	{
	}

	operator FVector2D() const { return FVector2D(X, Y); }
};

}
