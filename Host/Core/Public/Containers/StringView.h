#pragma once

#include "HAL/Platform.h"
#include "Misc/AssertionMacros.h"
#include "Misc/CString.h"

#include <string_view>
#include <type_traits>

class FString;

/** Somebody else's text: not owned, not terminated. Equality ignores case, as FString's. */
class FStringView
{
public:
	constexpr FStringView() = default;
	FStringView(const TCHAR* String)
		: Data(String ? String : TEXT(""))
		, Length(FCString::Strlen(Data))
	{
	}
	constexpr FStringView(const TCHAR* InData, int32 InLength)
		: Data(InData)
		, Length(InLength)
	{
	}
	FStringView(const FString& String);

	constexpr const TCHAR* GetData() const { return Data; }
	constexpr int32 Len() const { return Length; }
	constexpr bool IsEmpty() const { return Length == 0; }
	TCHAR operator[](int32 Index) const
	{
		checkf(Index >= 0 && Index < Length, TEXT("String view index out of bounds: index %d of %d"), Index, Length);
		return Data[Index];
	}

	FStringView Left(int32 Count) const { return Mid(0, Count); }
	FStringView Right(int32 Count) const { return Mid(Length - ClampedCount(Count)); }
	FStringView LeftChop(int32 Count) const { return Mid(0, Length - ClampedCount(Count)); }
	FStringView RightChop(int32 Count) const { return Mid(ClampedCount(Count)); }
	FStringView Mid(int32 Start, int32 Count = MAX_int32) const;
	FStringView TrimStartAndEnd() const;

	bool Equals(FStringView Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const;
	/** Sign tells the order, by unit. */
	int32 Compare(FStringView Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const;
	bool StartsWith(FStringView Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;
	bool EndsWith(FStringView Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;
	/** Unit index at or after StartPosition, INDEX_NONE when there is none. */
	int32 Find(
		FStringView Search, int32 StartPosition = 0, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const;
	bool Contains(FStringView Search, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return Find(Search, 0, SearchCase) != INDEX_NONE;
	}
	bool FindChar(TCHAR C, int32& OutIndex) const;
	bool FindLastChar(TCHAR C, int32& OutIndex) const;

	const TCHAR* begin() const { return Data; }
	const TCHAR* end() const { return Data + Length; }

	friend bool operator==(FStringView A, FStringView B) { return A.Equals(B, ESearchCase::IgnoreCase); }
	friend bool operator==(FStringView A, const TCHAR* B) { return A.Equals(FStringView(B), ESearchCase::IgnoreCase); }

private:
	int32 ClampedCount(int32 Count) const { return Count < 0 ? 0 : Count > Length ? Length : Count; }

	const TCHAR* Data = TEXT("");
	int32 Length = 0;
};

/** The same for UTF-8 bytes, as files and the network carry them. */
class FUtf8StringView
{
public:
	constexpr FUtf8StringView() = default;
	constexpr FUtf8StringView(const UTF8CHAR* InData, int32 InLength)
		: Data(InData)
		, Length(InLength)
	{
	}
	constexpr const UTF8CHAR* GetData() const { return Data; }
	constexpr int32 Len() const { return Length; }

private:
	const UTF8CHAR* Data = u8"";
	int32 Length = 0;
};

using FAnsiStringView = std::string_view;

/** Hash that ignores the case of ASCII letters. */
uint32 GetTypeHash(FStringView View);
