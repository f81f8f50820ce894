#pragma once

#include "../../Internal/Misc/CheckedFormat.h"
#include "Containers/Array.h"
#include "Containers/StringView.h"

#include <string_view>

class FText;
class FName;

/**
 * The engine's string: UTF-16 units, always terminated.
 *
 * The rule that bites: == and <, searches, map keys and TArray::Contains ignore the case of ASCII letters; Equals and
 * Compare do not, by default.
 */
class FString
{
public:
	using ElementType = TCHAR;

	FString() = default;
	FString(const TCHAR* String)
		: FString(FStringView(String))
	{
	}
	FString(const ANSICHAR* String);
	FString(const UTF8CHAR* String);
	explicit FString(FStringView View);
	explicit FString(FUtf8StringView View);
	/** Of units that need no terminator. */
	static FString ConstructFromPtrSize(const TCHAR* Ptr, int32 Size) { return FString(FStringView(Ptr, Size)); }
	/** Copies the string and keeps room for ExtraSlack more units. */
	explicit FString(const FString& Other, int32 ExtraSlack);
	explicit FString(const FName&) = delete;
	explicit FString(const FText&) = delete;

	FString& operator=(const TCHAR* String) { return *this = FString(String); }

	/** Never null: the empty string gives TEXT(""). */
	const TCHAR* operator*() const { return Data.Num() ? Data.GetData() : TEXT(""); }
	int32 Len() const { return Data.Num() ? Data.Num() - 1 : 0; }
	bool IsEmpty() const { return Data.Num() <= 1; }
	bool IsValidIndex(int32 Index) const { return Index >= 0 && Index < Len(); }
	TCHAR& operator[](int32 Index)
	{
		RangeCheck(Index);
		return Data[Index];
	}
	const TCHAR& operator[](int32 Index) const
	{
		RangeCheck(Index);
		return Data[Index];
	}
	TArray<TCHAR>& GetCharArray() { return Data; }
	const TArray<TCHAR>& GetCharArray() const { return Data; }
	// Not by way of operator*: of the empty text there is one in each library, and the two calls may not meet the same.
	const TCHAR* begin() const { return Data.GetData(); }
	const TCHAR* end() const { return Data.GetData() + Len(); }

	void Empty(int32 Slack = 0) { Data.Empty(Slack ? Slack + 1 : 0); }
	void Reset(int32 NewReservedSize = 0) { Data.Reset(NewReservedSize ? NewReservedSize + 1 : 0); }
	void Reserve(int32 CharacterCount) { Data.Reserve(CharacterCount + 1); }
	void Shrink() { Data.Shrink(); }
	FString& AppendChar(TCHAR C)
	{
		const int32 Terminator = Data.Num() ? Data.Num() - 1 : 0;
		Data.AddUninitialized(Data.Num() ? 1 : 2);
		Data.GetData()[Terminator] = C;
		Data.GetData()[Terminator + 1] = 0;
		return *this;
	}
	FString& Append(FStringView View);
	FString& Append(const TCHAR* Text, int32 Count) { return Append(FStringView(Text, Count)); }
	FString& AppendChars(const TCHAR* Text, int32 Count) { return Append(FStringView(Text, Count)); }
	void AppendInt(int32 Number);
	void InsertAt(int32 Index, const FString& Characters);
	void InsertAt(int32 Index, TCHAR Character);
	void RemoveAt(int32 Index, int32 Count = 1, EAllowShrinking AllowShrinking = EAllowShrinking::Default);

	FString& operator+=(const FString& Other) { return Append(FStringView(Other)); }
	FString& operator+=(FStringView Other) { return Append(Other); }
	FString& operator+=(const TCHAR* Other) { return Append(FStringView(Other)); }
	FString& operator+=(TCHAR C) { return AppendChar(C); }
	template <typename T>
	requires(std::is_arithmetic_v<T> && !std::is_same_v<T, TCHAR>) FString& operator+=(T) = delete;
	/** Joins paths: one "/" between, unless the left side is empty or ends in a slash, or the right side starts with
	 * "/". */
	FString& operator/=(FStringView Other);

	bool Equals(const FString& Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const
	{
		return FStringView(*this).Equals(Other, SearchCase);
	}
	int32 Compare(const FString& Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const
	{
		return FStringView(*this).Compare(Other, SearchCase);
	}

	/** An empty text is found. */
	bool Contains(FStringView SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase,
		ESearchDir::Type SearchDir = ESearchDir::FromStart) const;
	/** Unit index, INDEX_NONE when there is none. FromEnd with a StartPosition searches before it. */
	int32 Find(FStringView SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase,
		ESearchDir::Type SearchDir = ESearchDir::FromStart, int32 StartPosition = INDEX_NONE) const;
	bool FindChar(TCHAR C, int32& OutIndex) const { return FStringView(*this).FindChar(C, OutIndex); }
	bool FindLastChar(TCHAR C, int32& OutIndex) const { return FStringView(*this).FindLastChar(C, OutIndex); }
	/** An empty prefix is no prefix. */
	bool StartsWith(FStringView Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;
	bool EndsWith(FStringView Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;
	bool MatchesWildcard(const FString& Wildcard, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;
	bool RemoveFromStart(FStringView Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);
	bool RemoveFromEnd(FStringView Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);

	[[nodiscard]] FString Replace(
		const TCHAR* From, const TCHAR* To, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;
	/** @return the number of replacements; an empty SearchText, or one replaced by itself with regard to case, gives 0
	 */
	int32 ReplaceInline(
		const TCHAR* SearchText, const TCHAR* ReplacementText, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);
	bool ReplaceCharInline(TCHAR From, TCHAR To, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);

	/** @return the number of pieces; empty pieces are dropped unless told otherwise */
	int32 ParseIntoArray(TArray<FString>& OutArray, const TCHAR* Delimiter, bool bInCullEmpty = true) const;
	int32 ParseIntoArray(
		TArray<FString>& OutArray, const TCHAR* const* Delimiters, int32 NumDelimiters, bool bInCullEmpty = true) const;
	int32 ParseIntoArrayLines(TArray<FString>& OutArray, bool bInCullEmpty = true) const;
	int32 ParseIntoArrayWS(
		TArray<FString>& OutArray, const TCHAR* ExtraDelimiter = nullptr, bool bInCullEmpty = true) const;
	/** The outputs stay as they are when the text is not found. */
	bool Split(const FString& InStr, FString* LeftS, FString* RightS,
		ESearchCase::Type SearchCase = ESearchCase::IgnoreCase,
		ESearchDir::Type SearchDir = ESearchDir::FromStart) const;
	template <typename RangeType>
	static FString Join(const RangeType& Range, const TCHAR* Separator)
	{
		return JoinBy(
			Range, Separator, [](const auto& Element) -> const auto& { return Element; });
	}
	template <typename RangeType, typename ProjectionType>
	static FString JoinBy(const RangeType& Range, const TCHAR* Separator, ProjectionType Projection)
	{
		FString Result;
		bool bFirst = true;
		for (const auto& Element : Range)
		{
			if (!bFirst)
			{
				Result += Separator;
			}
			bFirst = false;
			Result += Projection(Element);
		}
		return Result;
	}

	[[nodiscard]] FString TrimStartAndEnd() const { return FString(FStringView(*this).TrimStartAndEnd()); }
	[[nodiscard]] FString TrimStart() const;
	[[nodiscard]] FString TrimEnd() const;
	void TrimStartAndEndInline() { *this = TrimStartAndEnd(); }
	void TrimStartInline() { *this = TrimStart(); }
	void TrimEndInline() { *this = TrimEnd(); }
	/** At most one character at each end. */
	[[nodiscard]] FString TrimChar(TCHAR CharacterToTrim, bool* bCharRemoved = nullptr) const;
	[[nodiscard]] FString TrimQuotes(bool* bQuotesRemoved = nullptr) const { return TrimChar(u'"', bQuotesRemoved); }

	[[nodiscard]] FString Left(int32 Count) const { return FString(FStringView(*this).Left(Count)); }
	[[nodiscard]] FString Right(int32 Count) const { return FString(FStringView(*this).Right(Count)); }
	[[nodiscard]] FString Mid(int32 Start, int32 Count = MAX_int32) const
	{
		return FString(FStringView(*this).Mid(Start, Count));
	}
	/** Removes Count units from the end. */
	[[nodiscard]] FString LeftChop(int32 Count) const { return FString(FStringView(*this).LeftChop(Count)); }
	/** Removes Count units from the start. */
	[[nodiscard]] FString RightChop(int32 Count) const { return FString(FStringView(*this).RightChop(Count)); }
	void LeftChopInline(int32 Count, EAllowShrinking AllowShrinking = EAllowShrinking::Default)
	{
		*this = LeftChop(Count);
	}
	void RightChopInline(int32 Count, EAllowShrinking AllowShrinking = EAllowShrinking::Default)
	{
		*this = RightChop(Count);
	}
	void LeftInline(int32 Count, EAllowShrinking AllowShrinking = EAllowShrinking::Default) { *this = Left(Count); }
	void RightInline(int32 Count, EAllowShrinking AllowShrinking = EAllowShrinking::Default) { *this = Right(Count); }
	void MidInline(int32 Start, int32 Count = MAX_int32) { *this = Mid(Start, Count); }

	[[nodiscard]] FString ToLower() const;
	[[nodiscard]] FString ToUpper() const;
	void ToLowerInline() { *this = ToLower(); }
	void ToUpperInline() { *this = ToUpper(); }
	/** Line breaks, tabs, quotes and backslashes to "\n", "\t" … and back. */
	[[nodiscard]] FString ReplaceCharWithEscapedChar() const;
	[[nodiscard]] FString ReplaceEscapedCharWithChar() const;

	bool IsNumeric() const;
	bool ToBool() const { return FCString::ToBool(**this); }
	static FString FromInt(int32 Number);
	/** Shortest form that keeps the value at six decimals, with at least MinFractionalDigits: 5 gives "5.0". */
	static FString SanitizeFloat(double Number, int32 MinFractionalDigits = 1);
	static FString Chr(TCHAR C) { return FString(FStringView(&C, 1)); }
	static FString ChrN(int32 Count, TCHAR C);

	/** The format is checked against its arguments at compile time, see Misc/CheckedFormat.h. */
	template <typename... Types>
	static FString Printf(std::type_identity_t<UE::Core::TCheckedFormatString<Types...>> Format, Types... Args)
	{
		return PrintfImpl(Format.Format, Args...);
	}
	template <typename... Types>
	FString& Appendf(std::type_identity_t<UE::Core::TCheckedFormatString<Types...>> Format, Types... Args)
	{
		return Append(FStringView(PrintfImpl(Format.Format, Args...)));
	}
	static FString PrintfImpl(const TCHAR* Format, ...);
	static FString PrintfVImpl(const TCHAR* Format, __builtin_va_list Args);

	friend bool operator==(const FString& A, const FString& B) { return A.Equals(B, ESearchCase::IgnoreCase); }
	friend bool operator==(const FString& A, const TCHAR* B)
	{
		return FStringView(A).Equals(FStringView(B), ESearchCase::IgnoreCase);
	}
	friend bool operator==(const FString& A, FStringView B)
	{
		return FStringView(A).Equals(B, ESearchCase::IgnoreCase);
	}
	friend bool operator<(const FString& A, const FString& B) { return A.Compare(B, ESearchCase::IgnoreCase) < 0; }
	friend bool operator<=(const FString& A, const FString& B) { return A.Compare(B, ESearchCase::IgnoreCase) <= 0; }
	friend bool operator>(const FString& A, const FString& B) { return A.Compare(B, ESearchCase::IgnoreCase) > 0; }
	friend bool operator>=(const FString& A, const FString& B) { return A.Compare(B, ESearchCase::IgnoreCase) >= 0; }

	friend FString operator+(const FString& A, const FString& B) { return FString(A, B.Len()).Append(FStringView(B)); }
	friend FString operator+(FString&& A, const FString& B) { return MoveTempIfPossible(A.Append(FStringView(B))); }
	friend FString operator+(const FString& A, const TCHAR* B) { return FString(A, 16).Append(FStringView(B)); }
	friend FString operator+(FString&& A, const TCHAR* B) { return MoveTempIfPossible(A.Append(FStringView(B))); }
	friend FString operator+(const TCHAR* A, const FString& B) { return FString(A).Append(FStringView(B)); }
	friend FString operator+(const FString& A, FStringView B) { return FString(A, B.Len()).Append(B); }
	friend FString operator+(const FString& A, TCHAR B) { return FString(A, 1).AppendChar(B); }
	friend FString operator+(FString&& A, TCHAR B) { return MoveTempIfPossible(A.AppendChar(B)); }
	template <typename T>
	requires(std::is_arithmetic_v<T> && !std::is_same_v<T, TCHAR>) friend FString operator+(
		const FString& A, T B) = delete;
	friend FString operator/(const FString& A, const FString& B) { return FString(A, B.Len() + 1) /= FStringView(B); }
	friend FString operator/(const FString& A, const TCHAR* B) { return FString(A, 16) /= FStringView(B); }
	friend FString operator/(const TCHAR* A, const FString& B) { return FString(A) /= FStringView(B); }

private:
	void RangeCheck(int32 Index) const
	{
		checkf(
			IsValidIndex(Index), TEXT("String index out of bounds: index %d of a string of length %d"), Index, Len());
	}

	TArray<TCHAR> Data; // with the terminator, or empty
};

inline FStringView::FStringView(const FString& String)
	: Data(*String)
	, Length(String.Len())
{
}

inline uint32 GetTypeHash(const FString& String)
{
	return GetTypeHash(FStringView(String));
}

FString LexToString(bool Value);
inline FString LexToString(const FString& Value)
{
	return Value;
}
FString LexToString(int32 Value);
FString LexToString(uint32 Value);
FString LexToString(int64 Value);
FString LexToString(uint64 Value);
FString LexToString(float Value);
FString LexToString(double Value);
inline FString LexToString(uint8 Value)
{
	return LexToString(static_cast<int32>(Value));
}
