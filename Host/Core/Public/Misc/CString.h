#pragma once

#include "HAL/Platform.h"
#include "Misc/Char.h"

namespace ESearchCase
{
enum Type : int
{
	CaseSensitive,
	IgnoreCase,
};
}

namespace ESearchDir
{
enum Type : int
{
	FromStart,
	FromEnd,
};
}

/** C-string functions on TCHAR. Numbers: leading white space and a sign are accepted, parsing stops at the first bad
 * character. */
struct FCString
{
	static int32 Strlen(const TCHAR* String);
	static int32 Strcmp(const TCHAR* A, const TCHAR* B) { return Compare(A, B, MAX_int32, ESearchCase::CaseSensitive); }
	static int32 Stricmp(const TCHAR* A, const TCHAR* B) { return Compare(A, B, MAX_int32, ESearchCase::IgnoreCase); }
	static int32 Strncmp(const TCHAR* A, const TCHAR* B, int32 Count)
	{
		return Compare(A, B, Count, ESearchCase::CaseSensitive);
	}
	static int32 Strnicmp(const TCHAR* A, const TCHAR* B, int32 Count)
	{
		return Compare(A, B, Count, ESearchCase::IgnoreCase);
	}
	/** First place of Find in Str, null when there is none; an empty Find is found at once. */
	static const TCHAR* Strstr(const TCHAR* Str, const TCHAR* Find)
	{
		return Search(Str, Find, ESearchCase::CaseSensitive);
	}
	static const TCHAR* Stristr(const TCHAR* Str, const TCHAR* Find)
	{
		return Search(Str, Find, ESearchCase::IgnoreCase);
	}

	/** Number text to number; 0 for text that is none; the nearest limit for one that does not fit. */
	static int32 Atoi(const TCHAR* String);
	static int64 Atoi64(const TCHAR* String);
	static float Atof(const TCHAR* String);
	static double Atod(const TCHAR* String);
	static bool ToBool(const TCHAR* String);

private:
	static int32 Compare(const TCHAR* A, const TCHAR* B, int32 Count, ESearchCase::Type SearchCase);
	static const TCHAR* Search(const TCHAR* Str, const TCHAR* Find, ESearchCase::Type SearchCase);
};
