#pragma once

#include "HAL/Platform.h"

#include <bit>
#include <cmath>

#define UE_SMALL_NUMBER (1.e-8f)
#define UE_KINDA_SMALL_NUMBER (1.e-4f)
#define UE_PI (3.1415926535897932f)

/** Numbers. Min, Max and Clamp want arguments of one type. */
struct FMath
{
	template <typename T>
	static constexpr T Max(const T A, const T B)
	{
		return B < A ? A : B;
	}
	template <typename T>
	static constexpr T Min(const T A, const T B)
	{
		return A < B ? A : B;
	}
	template <typename T>
	static constexpr T Max3(const T A, const T B, const T C)
	{
		return Max(Max(A, B), C);
	}
	template <typename T>
	static constexpr T Clamp(const T X, const T MinValue, const T MaxValue)
	{
		return Max(Min(X, MaxValue), MinValue);
	}
	template <typename T>
	static constexpr T Abs(const T A)
	{
		return A < T(0) ? -A : A;
	}
	template <typename T>
	static constexpr T Square(const T A)
	{
		return A * A;
	}
	template <typename T>
	static constexpr T Lerp(const T& A, const T& B, float Alpha)
	{
		return static_cast<T>(A + (B - A) * Alpha);
	}
	template <typename T>
	static constexpr T DivideAndRoundUp(T Dividend, T Divisor)
	{
		return (Dividend + Divisor - 1) / Divisor;
	}

	static int32 TruncToInt(double F) { return static_cast<int32>(F); }
	static int32 FloorToInt(double F) { return static_cast<int32>(std::floor(F)); }
	static int32 CeilToInt(double F) { return static_cast<int32>(std::ceil(F)); }
	static int32 RoundToInt(double F) { return static_cast<int32>(std::floor(F + 0.5)); }
	static float Sqrt(float F) { return std::sqrt(F); }
	static float Pow(float A, float B) { return std::pow(A, B); }
	static float Fmod(float X, float Y) { return std::fmod(X, Y); }
	static bool IsNearlyEqual(double A, double B, double Tolerance = UE_SMALL_NUMBER)
	{
		return std::fabs(A - B) <= Tolerance;
	}
	static bool IsNearlyZero(double A, double Tolerance = UE_SMALL_NUMBER) { return std::fabs(A) <= Tolerance; }
	/** Of those that are set. */
	static int32 CountBits(uint64 Bits) { return std::popcount(Bits); }
	/** 32 for zero. */
	static uint32 CountTrailingZeros(uint32 Value) { return static_cast<uint32>(std::countr_zero(Value)); }
	static bool IsFinite(double A) { return std::isfinite(A); }
};
