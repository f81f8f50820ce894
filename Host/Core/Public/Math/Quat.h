#pragma once

#include "Math/Rotator.h"

namespace UE::Math
{
/** A rotation as a quaternion of length 1. A * B turns by B first. */
template <typename T>
struct TQuat
{
	T X = 0;
	T Y = 0;
	T Z = 0;
	T W = 1;

	constexpr TQuat() = default;
	constexpr TQuat(T InX, T InY, T InZ, T InW)
		: X(InX)
		, Y(InY)
		, Z(InZ)
		, W(InW)
	{
	}
	constexpr explicit TQuat(EForceInit)
		: W(0)
	{
	}
	explicit TQuat(const TRotator<T>& R)
		: TQuat(R.Quaternion())
	{
	}
	/** The axis is of length 1, the angle in radians. */
	TQuat(const TVector<T>& Axis, T AngleRad)
		: X(Axis.X * std::sin(AngleRad / 2))
		, Y(Axis.Y * std::sin(AngleRad / 2))
		, Z(Axis.Z * std::sin(AngleRad / 2))
		, W(std::cos(AngleRad / 2))
	{
	}

	static const TQuat Identity;

	constexpr TQuat operator*(const TQuat& Q) const
	{
		return { W * Q.X + X * Q.W + Y * Q.Z - Z * Q.Y, W * Q.Y - X * Q.Z + Y * Q.W + Z * Q.X,
			W * Q.Z + X * Q.Y - Y * Q.X + Z * Q.W, W * Q.W - X * Q.X - Y * Q.Y - Z * Q.Z };
	}
	constexpr bool operator==(const TQuat& Q) const { return X == Q.X && Y == Q.Y && Z == Q.Z && W == Q.W; }
	/** Q and -Q are the same rotation. */
	bool Equals(const TQuat& Q, T Tolerance = UE_KINDA_SMALL_NUMBER) const
	{
		const T Dot = X * Q.X + Y * Q.Y + Z * Q.Z + W * Q.W;
		return FMath::IsNearlyEqual(FMath::Abs(Dot), 1, Tolerance);
	}
	bool IsIdentity(T Tolerance = UE_SMALL_NUMBER) const { return Equals(Identity, Tolerance); }
	constexpr TQuat Inverse() const { return { -X, -Y, -Z, W }; }
	constexpr TVector<T> RotateVector(const TVector<T>& V) const
	{
		const TVector<T> Q(X, Y, Z);
		const TVector<T> Twice = (Q ^ V) * T(2);
		return V + Twice * W + (Q ^ Twice);
	}
	constexpr TVector<T> UnrotateVector(const TVector<T>& V) const { return Inverse().RotateVector(V); }
	TRotator<T> Rotator() const;
	TVector<T> GetForwardVector() const { return RotateVector(TVector<T>::ForwardVector); }
	TVector<T> GetRightVector() const { return RotateVector(TVector<T>::RightVector); }
	TVector<T> GetUpVector() const { return RotateVector(TVector<T>::UpVector); }
	FString ToString() const
	{
		return FString::Printf(TEXT("X=%.9f Y=%.9f Z=%.9f W=%.9f"), static_cast<double>(X), static_cast<double>(Y),
			static_cast<double>(Z), static_cast<double>(W));
	}
};

template <typename T>
inline constexpr TQuat<T> TQuat<T>::Identity = { 0, 0, 0, 1 };

extern template struct TQuat<double>;
}
