#pragma once

#include "Math/Quat.h"

struct FReflected_FTransform;

namespace UE::Math
{
/** Scales, then turns, then moves. A * B does A first. */
template <typename T>
struct TTransform
{
	TTransform() = default;
	explicit TTransform(const TVector<T>& InTranslation)
		: Translation(InTranslation)
	{
	}
	explicit TTransform(const TQuat<T>& InRotation)
		: Rotation(InRotation)
	{
	}
	explicit TTransform(const TRotator<T>& InRotation)
		: Rotation(InRotation)
	{
	}
	TTransform(const TQuat<T>& InRotation, const TVector<T>& InTranslation,
		const TVector<T>& InScale3D = TVector<T>::OneVector)
		: Rotation(InRotation)
		, Translation(InTranslation)
		, Scale3D(InScale3D)
	{
	}
	TTransform(const TRotator<T>& InRotation, const TVector<T>& InTranslation,
		const TVector<T>& InScale3D = TVector<T>::OneVector)
		: TTransform(InRotation.Quaternion(), InTranslation, InScale3D)
	{
	}

	static const TTransform Identity;

	TVector<T> GetLocation() const { return Translation; }
	TVector<T> GetTranslation() const { return Translation; }
	TQuat<T> GetRotation() const { return Rotation; }
	TRotator<T> Rotator() const { return Rotation.Rotator(); }
	TVector<T> GetScale3D() const { return Scale3D; }
	void SetLocation(const TVector<T>& Origin) { Translation = Origin; }
	void SetTranslation(const TVector<T>& NewTranslation) { Translation = NewTranslation; }
	void SetRotation(const TQuat<T>& NewRotation) { Rotation = NewRotation; }
	void SetScale3D(const TVector<T>& NewScale3D) { Scale3D = NewScale3D; }

	/** A shear, which two uneven scales and a turn can make, is left out, as everywhere in transforms of this form. */
	TTransform operator*(const TTransform& Other) const
	{
		return TTransform(Other.Rotation * Rotation, Other.TransformPosition(Translation), Scale3D * Other.Scale3D);
	}
	/** What, done before Other, makes this one. */
	TTransform GetRelativeTransform(const TTransform& Other) const
	{
		return TTransform(Other.Rotation.Inverse() * Rotation, Other.InverseTransformPosition(Translation),
			Scale3D * GetSafeScaleReciprocal(Other.Scale3D));
	}
	TTransform Inverse() const { return TTransform().GetRelativeTransform(*this); }
	TVector<T> TransformPosition(const TVector<T>& V) const { return Rotation.RotateVector(V * Scale3D) + Translation; }
	TVector<T> InverseTransformPosition(const TVector<T>& V) const
	{
		return Rotation.UnrotateVector(V - Translation) * GetSafeScaleReciprocal(Scale3D);
	}
	TVector<T> TransformVector(const TVector<T>& V) const { return Rotation.RotateVector(V * Scale3D); }

	bool Equals(const TTransform& Other, T Tolerance = UE_KINDA_SMALL_NUMBER) const
	{
		return Rotation.Equals(Other.Rotation, Tolerance) && Translation.Equals(Other.Translation, Tolerance) &&
			   Scale3D.Equals(Other.Scale3D, Tolerance);
	}
	FString ToString() const;

private:
	friend struct ::FReflected_FTransform;

	/** 0 in place of what would be infinite. */
	static TVector<T> GetSafeScaleReciprocal(const TVector<T>& Scale)
	{
		const auto Invert = [](T S) { return FMath::IsNearlyZero(S) ? T(0) : 1 / S; };
		return { Invert(Scale.X), Invert(Scale.Y), Invert(Scale.Z) };
	}

	TQuat<T> Rotation;
	TVector<T> Translation;
	TVector<T> Scale3D = TVector<T>::OneVector;
};

template <typename T>
inline const TTransform<T> TTransform<T>::Identity;

extern template struct TTransform<double>;
}
