#pragma once

#include "Containers/UnrealString.h"
#include "Math/MathFwd.h"
#include "Math/UnrealMathUtility.h"
#include "Math/Vector2D.h"

namespace UE::Math
{
/** A point or direction in space: X forward, Y right, Z up, in centimetres. */
template <typename T>
struct TVector
{
	T X = 0;
	T Y = 0;
	T Z = 0;

	constexpr TVector() = default;
	constexpr TVector(T InX, T InY, T InZ)
		: X(InX)
		, Y(InY)
		, Z(InZ)
	{
	}
	constexpr explicit TVector(T InF)
		: X(InF)
		, Y(InF)
		, Z(InF)
	{
	}
	constexpr explicit TVector(EForceInit) {}
	constexpr explicit TVector(const TVector2<T>& V, T InZ = 0)
		: X(V.X)
		, Y(V.Y)
		, Z(InZ)
	{
	}
	template <typename U>
	requires(!std::is_same_v<T, U>) constexpr explicit TVector(const TVector<U>& V)
		: X(static_cast<T>(V.X))
		, Y(static_cast<T>(V.Y))
		, Z(static_cast<T>(V.Z))
	{
	}

	static const TVector ZeroVector;
	static const TVector OneVector;
	static const TVector ForwardVector;
	static const TVector RightVector;
	static const TVector UpVector;

	constexpr TVector operator+(const TVector& V) const { return { X + V.X, Y + V.Y, Z + V.Z }; }
	constexpr TVector operator-(const TVector& V) const { return { X - V.X, Y - V.Y, Z - V.Z }; }
	constexpr TVector operator*(const TVector& V) const { return { X * V.X, Y * V.Y, Z * V.Z }; }
	constexpr TVector operator/(const TVector& V) const { return { X / V.X, Y / V.Y, Z / V.Z }; }
	constexpr TVector operator*(T Scale) const { return { X * Scale, Y * Scale, Z * Scale }; }
	constexpr TVector operator/(T Scale) const { return { X / Scale, Y / Scale, Z / Scale }; }
	constexpr TVector operator-() const { return { -X, -Y, -Z }; }
	friend constexpr TVector operator*(T Scale, const TVector& V) { return V * Scale; }
	TVector& operator+=(const TVector& V) { return *this = *this + V; }
	TVector& operator-=(const TVector& V) { return *this = *this - V; }
	TVector& operator*=(T Scale) { return *this = *this * Scale; }
	TVector& operator/=(T Scale) { return *this = *this / Scale; }
	/** Exactly; see Equals for what was computed. */
	constexpr bool operator==(const TVector& V) const { return X == V.X && Y == V.Y && Z == V.Z; }
	/** The dot product. */
	constexpr T operator|(const TVector& V) const { return X * V.X + Y * V.Y + Z * V.Z; }
	/** The cross product. */
	constexpr TVector operator^(const TVector& V) const
	{
		return { Y * V.Z - Z * V.Y, Z * V.X - X * V.Z, X * V.Y - Y * V.X };
	}
	static constexpr T DotProduct(const TVector& A, const TVector& B) { return A | B; }
	static constexpr TVector CrossProduct(const TVector& A, const TVector& B) { return A ^ B; }

	bool Equals(const TVector& V, T Tolerance = UE_KINDA_SMALL_NUMBER) const
	{
		return FMath::IsNearlyEqual(X, V.X, Tolerance) && FMath::IsNearlyEqual(Y, V.Y, Tolerance) &&
			   FMath::IsNearlyEqual(Z, V.Z, Tolerance);
	}
	constexpr bool IsZero() const { return X == 0 && Y == 0 && Z == 0; }
	bool IsNearlyZero(T Tolerance = UE_KINDA_SMALL_NUMBER) const { return Equals(ZeroVector, Tolerance); }
	constexpr T SizeSquared() const { return *this | *this; }
	T Size() const { return std::sqrt(SizeSquared()); }
	T Length() const { return Size(); }
	T Size2D() const { return std::sqrt(X * X + Y * Y); }
	/** Of length 1; zero when this one is shorter than the root of Tolerance. */
	TVector GetSafeNormal(T Tolerance = UE_SMALL_NUMBER) const
	{
		return SizeSquared() < Tolerance ? ZeroVector : *this / Size();
	}
	TVector GetClampedToMaxSize(T MaxSize) const
	{
		return SizeSquared() > MaxSize * MaxSize ? GetSafeNormal() * MaxSize : *this;
	}
	static constexpr T DistSquared(const TVector& A, const TVector& B) { return (A - B).SizeSquared(); }
	static T Dist(const TVector& A, const TVector& B) { return (A - B).Size(); }
	static T Distance(const TVector& A, const TVector& B) { return Dist(A, B); }
	static T Dist2D(const TVector& A, const TVector& B) { return (A - B).Size2D(); }

	/** The rotation that turns the forward vector to this direction, without roll. */
	TRotator<T> Rotation() const;
	FString ToString() const
	{
		return FString::Printf(
			TEXT("X=%3.3f Y=%3.3f Z=%3.3f"), static_cast<double>(X), static_cast<double>(Y), static_cast<double>(Z));
	}
};

template <typename T>
inline constexpr TVector<T> TVector<T>::ZeroVector = { 0, 0, 0 };
template <typename T>
inline constexpr TVector<T> TVector<T>::OneVector = { 1, 1, 1 };
template <typename T>
inline constexpr TVector<T> TVector<T>::ForwardVector = { 1, 0, 0 };
template <typename T>
inline constexpr TVector<T> TVector<T>::RightVector = { 0, 1, 0 };
template <typename T>
inline constexpr TVector<T> TVector<T>::UpVector = { 0, 0, 1 };
}
