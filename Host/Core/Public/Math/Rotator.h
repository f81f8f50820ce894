#pragma once

#include "Math/Vector.h"

namespace UE::Math
{
/** A rotation in degrees: roll about X first, then pitch (up is positive) about Y, then yaw (right) about Z. */
template <typename T>
struct TRotator
{
	T Pitch = 0;
	T Yaw = 0;
	T Roll = 0;

	constexpr TRotator() = default;
	constexpr TRotator(T InPitch, T InYaw, T InRoll)
		: Pitch(InPitch)
		, Yaw(InYaw)
		, Roll(InRoll)
	{
	}
	constexpr explicit TRotator(T InF)
		: Pitch(InF)
		, Yaw(InF)
		, Roll(InF)
	{
	}
	constexpr explicit TRotator(EForceInit) {}
	explicit TRotator(const TQuat<T>& Quat);

	static const TRotator ZeroRotator;

	constexpr TRotator operator+(const TRotator& R) const { return { Pitch + R.Pitch, Yaw + R.Yaw, Roll + R.Roll }; }
	constexpr TRotator operator-(const TRotator& R) const { return { Pitch - R.Pitch, Yaw - R.Yaw, Roll - R.Roll }; }
	constexpr TRotator operator*(T Scale) const { return { Pitch * Scale, Yaw * Scale, Roll * Scale }; }
	TRotator& operator+=(const TRotator& R) { return *this = *this + R; }
	TRotator& operator-=(const TRotator& R) { return *this = *this - R; }
	/** Exactly: 0 and 360 differ here. */
	constexpr bool operator==(const TRotator& R) const { return Pitch == R.Pitch && Yaw == R.Yaw && Roll == R.Roll; }
	/** Whether both are the same turn, in degrees of each axis. */
	bool Equals(const TRotator& R, T Tolerance = UE_KINDA_SMALL_NUMBER) const
	{
		return FMath::IsNearlyZero(NormalizeAxis(Pitch - R.Pitch), Tolerance) &&
			   FMath::IsNearlyZero(NormalizeAxis(Yaw - R.Yaw), Tolerance) &&
			   FMath::IsNearlyZero(NormalizeAxis(Roll - R.Roll), Tolerance);
	}
	bool IsNearlyZero(T Tolerance = UE_KINDA_SMALL_NUMBER) const { return Equals(ZeroRotator, Tolerance); }
	bool IsZero() const { return *this == ZeroRotator; }

	/** The same angle between 0 and 360, without the latter. */
	static T ClampAxis(T Angle)
	{
		Angle = std::fmod(Angle, T(360));
		return Angle < 0 ? Angle + 360 : Angle;
	}
	/** The same angle between -180 and 180, without the former. */
	static T NormalizeAxis(T Angle)
	{
		Angle = ClampAxis(Angle);
		return Angle > 180 ? Angle - 360 : Angle;
	}
	TRotator GetNormalized() const { return { NormalizeAxis(Pitch), NormalizeAxis(Yaw), NormalizeAxis(Roll) }; }

	TQuat<T> Quaternion() const;
	/** The direction in which the turned forward vector points. */
	TVector<T> Vector() const;
	TVector<T> RotateVector(const TVector<T>& V) const;
	TVector<T> UnrotateVector(const TVector<T>& V) const;
	FString ToString() const
	{
		return FString::Printf(
			TEXT("P=%f Y=%f R=%f"), static_cast<double>(Pitch), static_cast<double>(Yaw), static_cast<double>(Roll));
	}
};

template <typename T>
inline constexpr TRotator<T> TRotator<T>::ZeroRotator = { 0, 0, 0 };

extern template struct TRotator<double>;
}
