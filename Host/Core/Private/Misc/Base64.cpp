#include "Misc/Base64.h"

namespace Base64
{
constexpr int32 BitsPerDigit = 6;
constexpr int32 BitsPerByte = 8;
constexpr int32 DigitsPerGroup = 4;

int32 ToDigit(TCHAR Character)
{
	static const FString Alphabet = TEXT("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
	int32 Digit = INDEX_NONE;
	Alphabet.FindChar(Character, Digit);
	return Digit;
}
}

bool FBase64::Decode(const FString& Source, TArray<uint8>& OutDest)
{
	OutDest.Empty();
	int32 NumDigits = Source.Len();
	const int32 MaxPadding = 2;
	while (NumDigits > 0 && Source[NumDigits - 1] == TEXT('=') && Source.Len() - NumDigits < MaxPadding)
	{
		--NumDigits;
	}
	uint32 Bits = 0;
	int32 NumBits = 0;
	for (int32 Index = 0; Index < NumDigits; ++Index)
	{
		const int32 Digit = Base64::ToDigit(Source[Index]);
		if (Digit == INDEX_NONE)
		{
			return false;
		}
		Bits = (Bits << Base64::BitsPerDigit) | static_cast<uint32>(Digit);
		NumBits += Base64::BitsPerDigit;
		if (NumBits >= Base64::BitsPerByte)
		{
			NumBits -= Base64::BitsPerByte;
			OutDest.Add(static_cast<uint8>(Bits >> NumBits));
		}
	}
	return Source.Len() % Base64::DigitsPerGroup == 0;
}
