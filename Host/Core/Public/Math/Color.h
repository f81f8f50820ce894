#pragma once

#include "Containers/UnrealString.h"
#include "HAL/Platform.h"

struct FColor;

/** A colour in linear light, each part from 0 to 1. */
struct FLinearColor
{
	float R = 0.0f;
	float G = 0.0f;
	float B = 0.0f;
	float A = 0.0f;

	constexpr FLinearColor() = default;
	constexpr FLinearColor(float InR, float InG, float InB, float InA = 1.0f)
		: R(InR)
		, G(InG)
		, B(InB)
		, A(InA)
	{
	}
	/** From sRGB, so FColor(51, 51, 51) is about 0.033 and not 0.2. */
	FLinearColor(const FColor& Color);
	static FLinearColor FromSRGBColor(const FColor& Color);

	static const FLinearColor White;
	static const FLinearColor Gray;
	static const FLinearColor Black;
	static const FLinearColor Transparent;
	static const FLinearColor Red;
	static const FLinearColor Green;
	static const FLinearColor Blue;
	static const FLinearColor Yellow;

	FColor ToFColor(bool bSRGB) const;
	FColor ToFColorSRGB() const;
	FString ToString() const;
	FLinearColor CopyWithNewOpacity(float NewOpacity) const { return { R, G, B, NewOpacity }; }

	constexpr FLinearColor operator*(const FLinearColor& Other) const
	{
		return { R * Other.R, G * Other.G, B * Other.B, A * Other.A };
	}
	constexpr FLinearColor operator*(float Scale) const { return { R * Scale, G * Scale, B * Scale, A * Scale }; }
	constexpr bool operator==(const FLinearColor& Other) const = default;
	bool Equals(const FLinearColor& Other, float Tolerance = 1.e-4f) const;
};

/** A colour in sRGB, a byte each. The members lie BGRA, the constructor takes RGBA. */
struct FColor
{
	uint8 B = 0;
	uint8 G = 0;
	uint8 R = 0;
	uint8 A = 0;

	constexpr FColor() = default;
	constexpr FColor(uint8 InR, uint8 InG, uint8 InB, uint8 InA = 255)
		: B(InB)
		, G(InG)
		, R(InR)
		, A(InA)
	{
	}
	/** "RGB", "RRGGBB" or "RRGGBBAA", with or without "#"; black and transparent for anything else. */
	static FColor FromHex(const FString& HexString);
	FString ToHex() const;
	constexpr bool operator==(const FColor& Other) const = default;

	static const FColor White;
	static const FColor Black;
};

inline FLinearColor::FLinearColor(const FColor& Color)
	: FLinearColor(FromSRGBColor(Color))
{
}
