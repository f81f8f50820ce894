#include "Math/Color.h"

#include "Math/UnrealMathUtility.h"

#include <cmath>

const FLinearColor FLinearColor::White(1.0f, 1.0f, 1.0f);
const FLinearColor FLinearColor::Gray(0.5f, 0.5f, 0.5f);
const FLinearColor FLinearColor::Black(0.0f, 0.0f, 0.0f);
const FLinearColor FLinearColor::Transparent(0.0f, 0.0f, 0.0f, 0.0f);
const FLinearColor FLinearColor::Red(1.0f, 0.0f, 0.0f);
const FLinearColor FLinearColor::Green(0.0f, 1.0f, 0.0f);
const FLinearColor FLinearColor::Blue(0.0f, 0.0f, 1.0f);
const FLinearColor FLinearColor::Yellow(1.0f, 1.0f, 0.0f);
const FColor FColor::White(255, 255, 255);
const FColor FColor::Black(0, 0, 0);

// The transfer curve of IEC 61966-2-1.
namespace SRGB
{
float ToLinear(uint8 Byte)
{
	const float Value = static_cast<float>(Byte) / 255.0f;
	return Value <= 0.04045f ? Value / 12.92f : std::pow((Value + 0.055f) / 1.055f, 2.4f);
}

float FromLinear(float Value)
{
	return Value <= 0.0031308f ? Value * 12.92f : 1.055f * std::pow(Value, 1.0f / 2.4f) - 0.055f;
}

uint8 ToByte(float Value)
{
	return static_cast<uint8>(FMath::RoundToInt(FMath::Clamp(Value, 0.0f, 1.0f) * 255.0f));
}
}

FLinearColor FLinearColor::FromSRGBColor(const FColor& Color)
{
	return { SRGB::ToLinear(Color.R), SRGB::ToLinear(Color.G), SRGB::ToLinear(Color.B),
		static_cast<float>(Color.A) / 255.0f };
}

FColor FLinearColor::ToFColor(bool bSRGB) const
{
	const auto Convert = [bSRGB](float Value) {
		return SRGB::ToByte(bSRGB ? SRGB::FromLinear(FMath::Clamp(Value, 0.0f, 1.0f)) : Value);
	};
	return FColor(Convert(R), Convert(G), Convert(B), SRGB::ToByte(A));
}

FColor FLinearColor::ToFColorSRGB() const
{
	return ToFColor(true);
}

FString FLinearColor::ToString() const
{
	return FString::Printf(TEXT("(R=%f,G=%f,B=%f,A=%f)"), R, G, B, A);
}

bool FLinearColor::Equals(const FLinearColor& Other, float Tolerance) const
{
	return FMath::IsNearlyEqual(R, Other.R, Tolerance) && FMath::IsNearlyEqual(G, Other.G, Tolerance) &&
		   FMath::IsNearlyEqual(B, Other.B, Tolerance) && FMath::IsNearlyEqual(A, Other.A, Tolerance);
}

FColor FColor::FromHex(const FString& HexString)
{
	const FString Hex = HexString.StartsWith(TEXT("#")) ? HexString.RightChop(1) : HexString;
	const bool bShort = Hex.Len() == 3;
	const int32 NumParts = bShort ? 3 : Hex.Len() / 2;
	if (!bShort && Hex.Len() != 6 && Hex.Len() != 8)
	{
		return FColor();
	}
	uint8 Parts[4] = { 0, 0, 0, 255 };
	for (int32 Part = 0; Part < NumParts; ++Part)
	{
		int32 Value = 0;
		for (int32 Digit = 0; Digit < 2; ++Digit)
		{
			const TCHAR C = FChar::ToLower(Hex[bShort ? Part : Part * 2 + Digit]);
			if (!FChar::IsHexDigit(C))
			{
				return FColor();
			}
			Value = Value * 16 + (FChar::IsDigit(C) ? C - u'0' : C - u'a' + 10);
		}
		Parts[Part] = static_cast<uint8>(Value);
	}
	return FColor(Parts[0], Parts[1], Parts[2], Parts[3]);
}

FString FColor::ToHex() const
{
	return FString::Printf(TEXT("%02X%02X%02X%02X"), R, G, B, A);
}
