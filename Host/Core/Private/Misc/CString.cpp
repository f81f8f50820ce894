#include "Misc/CString.h"

#include "Containers/UnrealString.h"

#include <cstdlib>
#include <string>

namespace CString
{
/** The part of a text that a number parser of the C library can read. Longer than any number worth reading. */
constexpr int32 LongestNumber = 400;

std::string NarrowNumber(const TCHAR* String)
{
	while (FChar::IsWhitespace(*String))
	{
		++String;
	}
	std::string Narrow;
	for (int32 Count = 0; *String && *String < 0x80 && Count < LongestNumber; ++Count)
	{
		Narrow += static_cast<char>(*String++);
	}
	return Narrow;
}
}

int32 FCString::Strlen(const TCHAR* String)
{
	return static_cast<int32>(std::char_traits<TCHAR>::length(String));
}

int32 FCString::Compare(const TCHAR* A, const TCHAR* B, int32 Count, ESearchCase::Type SearchCase)
{
	for (; Count > 0; --Count, ++A, ++B)
	{
		const TCHAR FoldedA = SearchCase == ESearchCase::IgnoreCase ? FChar::ToLower(*A) : *A;
		const TCHAR FoldedB = SearchCase == ESearchCase::IgnoreCase ? FChar::ToLower(*B) : *B;
		if (FoldedA != FoldedB)
		{
			return static_cast<int32>(FoldedA) - static_cast<int32>(FoldedB);
		}
		if (FoldedA == 0)
		{
			break;
		}
	}
	return 0;
}

const TCHAR* FCString::Search(const TCHAR* Str, const TCHAR* Find, ESearchCase::Type SearchCase)
{
	const int32 Index = FStringView(Str).Find(FStringView(Find), 0, SearchCase);
	return Index == INDEX_NONE ? nullptr : Str + Index;
}

int32 FCString::Atoi(const TCHAR* String)
{
	const int64 Wide = Atoi64(String);
	return Wide > MAX_int32 ? MAX_int32 : Wide < MIN_int32 ? MIN_int32 : static_cast<int32>(Wide);
}

int64 FCString::Atoi64(const TCHAR* String)
{
	return std::strtoll(CString::NarrowNumber(String).c_str(), nullptr, 10);
}

float FCString::Atof(const TCHAR* String)
{
	return std::strtof(CString::NarrowNumber(String).c_str(), nullptr);
}

double FCString::Atod(const TCHAR* String)
{
	return std::strtod(CString::NarrowNumber(String).c_str(), nullptr);
}

bool FCString::ToBool(const TCHAR* String)
{
	for (const TCHAR* Word : { TEXT("True"), TEXT("Yes"), TEXT("On") })
	{
		if (Stricmp(String, Word) == 0)
		{
			return true;
		}
	}
	return Atoi(String) != 0;
}
