#pragma once

#include "Containers/UnrealString.h"

/** Finds switches in a command line. */
struct FParse
{
	/** Finds Match ("Name=") and reads what follows: up to the next space, or between double quotes. */
	static bool Value(const TCHAR* Stream, const TCHAR* Match, FString& OutValue);
	static bool Value(const TCHAR* Stream, const TCHAR* Match, int32& OutValue);
	/** Finds "-Param" as a whole word. */
	static bool Param(const TCHAR* Stream, const TCHAR* Param);
};
