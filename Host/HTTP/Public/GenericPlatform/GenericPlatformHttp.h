#pragma once

#include "Containers/UnrealString.h"

class FGenericPlatformHttp
{
public:
	/** Percent-encodes everything but letters, digits and "-_.~". */
	static FString UrlEncode(const FString& UnencodedString);
};
