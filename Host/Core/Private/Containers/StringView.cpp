#include "Containers/StringView.h"

#include "HAL/UnrealMemory.h"
#include "Templates/TypeHash.h"

#include <algorithm>
#include <string>

FStringView FStringView::Mid(int32 Start, int32 Count) const
{
	Start = std::clamp(Start, 0, Length);
	Count = std::clamp(Count, 0, Length - Start);
	return FStringView(Data + Start, Count);
}

FStringView FStringView::TrimStartAndEnd() const
{
	int32 Start = 0;
	int32 End = Length;
	while (Start < End && FChar::IsWhitespace(Data[Start]))
	{
		++Start;
	}
	while (End > Start && FChar::IsWhitespace(Data[End - 1]))
	{
		--End;
	}
	return FStringView(Data + Start, End - Start);
}

bool FStringView::Equals(FStringView Other, ESearchCase::Type SearchCase) const
{
	return Length == Other.Length && Compare(Other, SearchCase) == 0;
}

int32 FStringView::Compare(FStringView Other, ESearchCase::Type SearchCase) const
{
	const int32 Shared = std::min(Length, Other.Length);
	for (int32 Index = 0; Index < Shared; ++Index)
	{
		TCHAR A = Data[Index];
		TCHAR B = Other.Data[Index];
		if (A == B)
		{
			continue;
		}
		if (SearchCase == ESearchCase::IgnoreCase)
		{
			A = FChar::ToLower(A);
			B = FChar::ToLower(B);
		}
		if (A != B)
		{
			return A < B ? -1 : 1;
		}
	}
	return Length == Other.Length ? 0 : Length < Other.Length ? -1 : 1;
}

bool FStringView::StartsWith(FStringView Prefix, ESearchCase::Type SearchCase) const
{
	return Prefix.Length <= Length && Left(Prefix.Length).Equals(Prefix, SearchCase);
}

bool FStringView::EndsWith(FStringView Suffix, ESearchCase::Type SearchCase) const
{
	return Suffix.Length <= Length && Right(Suffix.Length).Equals(Suffix, SearchCase);
}

int32 FStringView::Find(FStringView Search, int32 StartPosition, ESearchCase::Type SearchCase) const
{
	StartPosition = std::clamp(StartPosition, 0, Length);
	const TCHAR* Begin = Data + StartPosition;
	const TCHAR* End = Data + Length;
	if (SearchCase == ESearchCase::CaseSensitive)
	{
		const size_t Found = std::u16string_view(Begin, static_cast<size_t>(End - Begin))
								 .find(std::u16string_view(Search.Data, static_cast<size_t>(Search.Length)));
		return Found == std::u16string_view::npos ? INDEX_NONE : static_cast<int32>(Found) + StartPosition;
	}
	const TCHAR* Found = std::search(Begin, End, Search.begin(), Search.end(),
		[](TCHAR A, TCHAR B) { return FChar::ToLower(A) == FChar::ToLower(B); });
	return Found == End && Search.Length > 0 ? INDEX_NONE : static_cast<int32>(Found - Data);
}

bool FStringView::FindChar(TCHAR C, int32& OutIndex) const
{
	const TCHAR* Found = std::find(begin(), end(), C);
	OutIndex = Found == end() ? INDEX_NONE : static_cast<int32>(Found - Data);
	return OutIndex != INDEX_NONE;
}

bool FStringView::FindLastChar(TCHAR C, int32& OutIndex) const
{
	for (OutIndex = Length - 1; OutIndex >= 0; --OutIndex)
	{
		if (Data[OutIndex] == C)
		{
			return true;
		}
	}
	return false;
}

namespace StringView
{
constexpr int32 UnitsPerWord = sizeof(uint64) / sizeof(TCHAR);

/** The same bits in each of the four units of a word. */
constexpr uint64 InEachUnit(uint64 Bits)
{
	return Bits * 0x0001000100010001ull;
}

/** FChar::ToLower for four units at once. A unit's top bit is free to take the carry of its comparisons. */
uint64 ToLower(uint64 Units)
{
	const uint64 TopBits = InEachUnit(0x8000);
	const uint64 Low = Units & ~TopBits;
	const uint64 FromA = Low + InEachUnit(0x8000 - u'A');
	const uint64 PastZ = Low + InEachUnit(0x8000 - u'Z' - 1);
	const uint64 IsUpper = FromA & ~PastZ & ~Units & TopBits;
	constexpr int32 FromTopBitTo32 = 10;
	return Units | (IsUpper >> FromTopBitTo32);
}

/** Both halves of the product: in the lower one alone, a word's last unit never gets to the bits that pick a bucket. */
uint64 Mix(uint64 Hash, uint64 Units)
{
	constexpr uint64 GoldenRatio = 0x9e3779b97f4a7c15ull;
	const unsigned __int128 Product = static_cast<unsigned __int128>(Hash ^ ToLower(Units)) * GoldenRatio;
	return static_cast<uint64>(Product) ^ static_cast<uint64>(Product >> 64);
}
}

uint32 GetTypeHash(FStringView View)
{
	uint64 Hash = static_cast<uint64>(View.Len()) + 1;
	const TCHAR* Place = View.begin();
	int32 NumLeft = View.Len();
	for (; NumLeft >= StringView::UnitsPerWord; NumLeft -= StringView::UnitsPerWord)
	{
		uint64 Units;
		FMemory::Memcpy(&Units, Place, sizeof(Units));
		Hash = StringView::Mix(Hash, Units);
		Place += StringView::UnitsPerWord;
	}
	if (NumLeft > 0)
	{
		uint64 Units = 0;
		FMemory::Memcpy(&Units, Place, static_cast<SIZE_T>(NumLeft) * sizeof(TCHAR));
		Hash = StringView::Mix(Hash, Units);
	}
	return static_cast<uint32>(Hash);
}
