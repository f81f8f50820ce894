#include "CoreMinimal.h"

namespace Rotation
{
constexpr double DegreesToRadians = 3.14159265358979323846 / 180.0;

/** Below this distance from straight up or down, yaw and roll cannot be told apart: all is yaw. */
constexpr double SingularityThreshold = 0.4999995;
}

namespace UE::Math
{
template <typename T>
TRotator<T> TVector<T>::Rotation() const
{
	return { static_cast<T>(std::atan2(Z, std::sqrt(X * X + Y * Y)) / ::Rotation::DegreesToRadians),
		static_cast<T>(std::atan2(Y, X) / ::Rotation::DegreesToRadians), 0 };
}

template <typename T>
TRotator<T>::TRotator(const TQuat<T>& Quat)
	: TRotator(Quat.Rotator())
{
}

template <typename T>
TQuat<T> TRotator<T>::Quaternion() const
{
	// Positive pitch looks up and positive roll tilts to the right: both turn against the axis.
	const TQuat<T> RollQuat(TVector<T>::ForwardVector, -Roll * ::Rotation::DegreesToRadians);
	const TQuat<T> PitchQuat(TVector<T>::RightVector, -Pitch * ::Rotation::DegreesToRadians);
	const TQuat<T> YawQuat(TVector<T>::UpVector, Yaw * ::Rotation::DegreesToRadians);
	return YawQuat * PitchQuat * RollQuat;
}

template <typename T>
TVector<T> TRotator<T>::Vector() const
{
	return Quaternion().GetForwardVector();
}

template <typename T>
TVector<T> TRotator<T>::RotateVector(const TVector<T>& V) const
{
	return Quaternion().RotateVector(V);
}

template <typename T>
TVector<T> TRotator<T>::UnrotateVector(const TVector<T>& V) const
{
	return Quaternion().UnrotateVector(V);
}

template <typename T>
TRotator<T> TQuat<T>::Rotator() const
{
	const T SinPitchHalf = Z * X - W * Y;
	const T Yaw = std::atan2(2 * (W * Z + X * Y), 1 - 2 * (Y * Y + Z * Z)) / ::Rotation::DegreesToRadians;
	if (FMath::Abs(SinPitchHalf) > ::Rotation::SingularityThreshold)
	{
		const T Up = SinPitchHalf > 0 ? 1 : -1;
		const T Turn = std::atan2(Z, W) * 2 / ::Rotation::DegreesToRadians;
		return { Up * 90, TRotator<T>::NormalizeAxis(Turn), 0 };
	}
	const T Pitch = std::asin(2 * SinPitchHalf) / ::Rotation::DegreesToRadians;
	const T Roll = std::atan2(-2 * (W * X + Y * Z), 1 - 2 * (X * X + Y * Y)) / ::Rotation::DegreesToRadians;
	return { Pitch, Yaw, Roll };
}

template <typename T>
FString TTransform<T>::ToString() const
{
	const TRotator<T> Turn = Rotator();
	return FString::Printf(TEXT("%f,%f,%f|%f,%f,%f|%f,%f,%f"), Translation.X, Translation.Y, Translation.Z, Turn.Pitch,
		Turn.Yaw, Turn.Roll, Scale3D.X, Scale3D.Y, Scale3D.Z);
}

template struct TVector<double>;
template struct TRotator<double>;
template struct TQuat<double>;
template struct TTransform<double>;
}
