#include "Containers/StringView.h"

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

uint32 GetTypeHash(FStringView View)
{
	// FNV-1a, 32 bits: http://www.isthe.com/chongo/tech/comp/fnv/
	uint32 Hash = 2166136261u;
	for (const TCHAR C : View)
	{
		Hash = (Hash ^ FChar::ToLower(C)) * 16777619u;
	}
	return Hash;
}
