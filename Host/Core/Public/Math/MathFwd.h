#pragma once

namespace UE::Math
{
template <typename T>
struct TVector;
template <typename T>
struct TRotator;
template <typename T>
struct TQuat;
template <typename T>
struct TTransform;
}

using FVector = UE::Math::TVector<double>;
using FVector3f = UE::Math::TVector<float>;
using FVector3d = UE::Math::TVector<double>;
using FRotator = UE::Math::TRotator<double>;
using FQuat = UE::Math::TQuat<double>;
using FTransform = UE::Math::TTransform<double>;
struct FIntPoint;
