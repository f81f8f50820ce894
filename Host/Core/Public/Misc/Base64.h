#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

/** Base64 with the alphabet of RFC 4648, section 4. */
struct FBase64
{
	/** @return false for what is not base64; padding is needed */
	static bool Decode(const FString& Source, TArray<uint8>& OutDest);
};
