#pragma once

#include "HAL/Platform.h"
#include "Math/UnrealMathUtility.h"

/** A point or size in the plane. */
template <typename T>
struct TVector2
{
	T X = 0;
	T Y = 0;

	constexpr TVector2() = default;
	constexpr TVector2(T InX, T InY)
		: X(InX)
		, Y(InY)
	{
	}
	constexpr explicit TVector2(T InF)
		: X(InF)
		, Y(InF)
	{
	}
	constexpr explicit TVector2(EForceInit) {}
	template <typename U>
	constexpr explicit TVector2(const TVector2<U>& Other)
		: X(static_cast<T>(Other.X))
		, Y(static_cast<T>(Other.Y))
	{
	}

	static const TVector2 ZeroVector;
	static const TVector2 UnitVector;

	constexpr TVector2 operator+(const TVector2& B) const { return { X + B.X, Y + B.Y }; }
	constexpr TVector2 operator-(const TVector2& B) const { return { X - B.X, Y - B.Y }; }
	constexpr TVector2 operator*(const TVector2& B) const { return { X * B.X, Y * B.Y }; }
	constexpr TVector2 operator*(T Scale) const { return { X * Scale, Y * Scale }; }
	constexpr TVector2 operator/(T Scale) const { return { X / Scale, Y / Scale }; }
	constexpr TVector2 operator-() const { return { -X, -Y }; }
	TVector2& operator+=(const TVector2& B) { return *this = *this + B; }
	TVector2& operator-=(const TVector2& B) { return *this = *this - B; }
	TVector2& operator*=(T Scale) { return *this = *this * Scale; }
	constexpr bool operator==(const TVector2& B) const { return X == B.X && Y == B.Y; }
	bool Equals(const TVector2& B, T Tolerance = UE_KINDA_SMALL_NUMBER) const
	{
		return FMath::IsNearlyEqual(X, B.X, Tolerance) && FMath::IsNearlyEqual(Y, B.Y, Tolerance);
	}
	bool IsZero() const { return X == 0 && Y == 0; }
	T Size() const { return std::sqrt(X * X + Y * Y); }
};

template <typename T>
inline constexpr TVector2<T> TVector2<T>::ZeroVector = { 0, 0 };
template <typename T>
inline constexpr TVector2<T> TVector2<T>::UnitVector = { 1, 1 };

using FVector2D = TVector2<double>;
using FVector2f = TVector2<float>;
using FVector2d = TVector2<double>;
