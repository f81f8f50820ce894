#pragma once

#include "Containers/UnrealString.h"

struct FPlatformMisc
{
	/** Empty when the variable is not set. */
	static FString GetEnvironmentVariable(const TCHAR* VariableName);
};
