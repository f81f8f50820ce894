#include "Misc/Guid.h"

#include <random>

namespace Guids
{
std::mt19937 MakeSeeded()
{
	std::random_device Device;
	std::seed_seq Seed{ Device(), Device(), Device(), Device(), Device(), Device(), Device(), Device() };
	return std::mt19937(Seed);
}
}

FGuid FGuid::NewGuid()
{
	// The device only seeds: each node and pin has a Guid, and the device is slow.
	static thread_local std::mt19937 Random = Guids::MakeSeeded();
	FGuid Guid(Random(), Random(), Random(), Random());
	// Version 4, variant 1 of RFC 4122: never all zero.
	Guid.B = (Guid.B & 0xFFFF0FFFu) | 0x00004000u;
	Guid.C = (Guid.C & 0x3FFFFFFFu) | 0x80000000u;
	return Guid;
}

bool FGuid::Parse(const FString& GuidString, FGuid& OutGuid)
{
	const FString Digits = GuidString.Replace(TEXT("-"), TEXT(""));
	if (Digits.Len() != 32)
	{
		return false;
	}
	uint32 Parts[4] = {};
	for (int32 Index = 0; Index < 32; ++Index)
	{
		const TCHAR C = FChar::ToLower(Digits[Index]);
		if (!FChar::IsHexDigit(C))
		{
			return false;
		}
		Parts[Index / 8] = Parts[Index / 8] * 16 + static_cast<uint32>(FChar::IsDigit(C) ? C - u'0' : C - u'a' + 10);
	}
	OutGuid = FGuid(Parts[0], Parts[1], Parts[2], Parts[3]);
	return true;
}

FString FGuid::ToString(EGuidFormats Format) const
{
	switch (Format)
	{
	case EGuidFormats::DigitsWithHyphens:
	case EGuidFormats::DigitsWithHyphensLower:
	{
		const FString Text =
			FString::Printf(TEXT("%08X-%04X-%04X-%04X-%04X%08X"), A, B >> 16, B & 0xFFFF, C >> 16, C & 0xFFFF, D);
		return Format == EGuidFormats::DigitsWithHyphens ? Text : Text.ToLower();
	}
	default:
	{
		const FString Text = FString::Printf(TEXT("%08X%08X%08X%08X"), A, B, C, D);
		return Format == EGuidFormats::Digits ? Text : Text.ToLower();
	}
	}
}
