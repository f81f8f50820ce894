#include "Containers/UnrealString.h"

#include "Containers/StringConv.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string>

FString::FString(const ANSICHAR* String)
{
	if (String)
	{
		const FUTF8ToTCHAR Converted(String);
		Append(FStringView(Converted.Get(), Converted.Length()));
	}
}

FString::FString(const UTF8CHAR* String)
	: FString(reinterpret_cast<const ANSICHAR*>(String))
{
}

FString::FString(FStringView View)
{
	Append(View);
}

FString::FString(FUtf8StringView View)
{
	const FUTF8ToTCHAR Converted(reinterpret_cast<const ANSICHAR*>(View.GetData()), View.Len());
	Append(FStringView(Converted.Get(), Converted.Length()));
}

FString::FString(const FString& Other, int32 ExtraSlack)
{
	Reserve(Other.Len() + ExtraSlack);
	Append(FStringView(Other));
}

FString& FString::Append(FStringView View)
{
	if (View.IsEmpty())
	{
		return *this;
	}
	const int32 OldLen = Len();
	const bool bOwnText =
		Data.Num() && View.GetData() >= Data.GetData() && View.GetData() < Data.GetData() + Data.Num();
	const int32 OwnOffset = bOwnText ? static_cast<int32>(View.GetData() - Data.GetData()) : 0;
	Data.AddUninitialized(OldLen + View.Len() + 1 - Data.Num());
	const TCHAR* Source = bOwnText ? Data.GetData() + OwnOffset : View.GetData();
	TCHAR* const End = std::copy_n(Source, View.Len(), Data.GetData() + OldLen);
	*End = 0;
	return *this;
}

namespace UnrealString
{
/** Without a format to be read: files hold very many numbers. */
template <typename IntegerType>
void AppendInteger(FString& Text, IntegerType Number)
{
	char Digits[24];
	const std::to_chars_result End = std::to_chars(std::begin(Digits), std::end(Digits), Number);
	for (const char* Digit = Digits; Digit < End.ptr; ++Digit)
	{
		Text.AppendChar(static_cast<TCHAR>(*Digit));
	}
}

template <typename IntegerType>
FString FromInteger(IntegerType Number)
{
	FString Text;
	AppendInteger(Text, Number);
	return Text;
}
}

void FString::AppendInt(int32 Number)
{
	UnrealString::AppendInteger(*this, Number);
}

void FString::InsertAt(int32 Index, const FString& Characters)
{
	*this = Left(Index) + Characters + Mid(Index);
}

void FString::InsertAt(int32 Index, TCHAR Character)
{
	InsertAt(Index, Chr(Character));
}

void FString::RemoveAt(int32 Index, int32 Count, EAllowShrinking AllowShrinking)
{
	checkf(Index >= 0 && Count >= 0 && Index + Count <= Len(), TEXT("RemoveAt(%d, %d) of a string of length %d"), Index,
		Count, Len());
	Data.RemoveAt(Index, Count, AllowShrinking);
}

FString& FString::operator/=(FStringView Other)
{
	const bool bNeedsSlash = !IsEmpty() && (*this)[Len() - 1] != u'/' && (*this)[Len() - 1] != u'\\' &&
							 (Other.IsEmpty() || Other[0] != u'/');
	if (bNeedsSlash)
	{
		AppendChar(u'/');
	}
	return Append(Other);
}

bool FString::Contains(FStringView SubStr, ESearchCase::Type SearchCase, ESearchDir::Type SearchDir) const
{
	return Find(SubStr, SearchCase, SearchDir) != INDEX_NONE;
}

int32 FString::Find(
	FStringView SubStr, ESearchCase::Type SearchCase, ESearchDir::Type SearchDir, int32 StartPosition) const
{
	if (SearchDir == ESearchDir::FromStart)
	{
		return FStringView(*this).Find(SubStr, StartPosition == INDEX_NONE ? 0 : StartPosition, SearchCase);
	}
	const int32 End = StartPosition == INDEX_NONE ? Len() : std::clamp(StartPosition, 0, Len());
	for (int32 Index = End - SubStr.Len(); Index >= 0; --Index)
	{
		if (FStringView(*this).Mid(Index, SubStr.Len()).Equals(SubStr, SearchCase))
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

bool FString::StartsWith(FStringView Prefix, ESearchCase::Type SearchCase) const
{
	return !Prefix.IsEmpty() && FStringView(*this).StartsWith(Prefix, SearchCase);
}

bool FString::EndsWith(FStringView Suffix, ESearchCase::Type SearchCase) const
{
	return !Suffix.IsEmpty() && FStringView(*this).EndsWith(Suffix, SearchCase);
}

bool FString::MatchesWildcard(const FString& Wildcard, ESearchCase::Type SearchCase) const
{
	// Greedy matching that goes back to the last "*" only: linear in practice, never recursive.
	const auto SameChar = [SearchCase](TCHAR A, TCHAR B) {
		return SearchCase == ESearchCase::CaseSensitive ? A == B : FChar::ToLower(A) == FChar::ToLower(B);
	};
	const FStringView Text(*this);
	const FStringView Pattern(Wildcard);
	int32 At = 0;
	int32 PatternAt = 0;
	int32 StarAt = INDEX_NONE;
	int32 RetryAt = 0;
	while (At < Text.Len())
	{
		if (PatternAt < Pattern.Len() && Pattern[PatternAt] == u'*')
		{
			StarAt = PatternAt++;
			RetryAt = At;
		}
		else if (PatternAt < Pattern.Len() && (Pattern[PatternAt] == u'?' || SameChar(Pattern[PatternAt], Text[At])))
		{
			++PatternAt;
			++At;
		}
		else if (StarAt != INDEX_NONE)
		{
			PatternAt = StarAt + 1;
			At = ++RetryAt;
		}
		else
		{
			return false;
		}
	}
	while (PatternAt < Pattern.Len() && Pattern[PatternAt] == u'*')
	{
		++PatternAt;
	}
	return PatternAt == Pattern.Len();
}

bool FString::RemoveFromStart(FStringView Prefix, ESearchCase::Type SearchCase)
{
	if (!StartsWith(Prefix, SearchCase))
	{
		return false;
	}
	RemoveAt(0, Prefix.Len());
	return true;
}

bool FString::RemoveFromEnd(FStringView Suffix, ESearchCase::Type SearchCase)
{
	if (!EndsWith(Suffix, SearchCase))
	{
		return false;
	}
	RemoveAt(Len() - Suffix.Len(), Suffix.Len());
	return true;
}

FString FString::Replace(const TCHAR* From, const TCHAR* To, ESearchCase::Type SearchCase) const
{
	FString Result = *this;
	Result.ReplaceInline(From, To, SearchCase);
	return Result;
}

int32 FString::ReplaceInline(const TCHAR* SearchText, const TCHAR* ReplacementText, ESearchCase::Type SearchCase)
{
	const FStringView Text(*this);
	const FStringView Search(SearchText);
	checkf(SearchText < Text.begin() || SearchText > Text.end() || IsEmpty(),
		TEXT("The search text must not lie in the string itself"));
	// Replacing a text by itself counts as replacing nothing; when case does not count, the result may still differ.
	const bool bSameText = SearchCase == ESearchCase::CaseSensitive && Search.Equals(ReplacementText, SearchCase);
	int32 Found = Search.IsEmpty() || bSameText ? INDEX_NONE : Text.Find(Search, 0, SearchCase);
	if (Found == INDEX_NONE)
	{
		return 0;
	}

	FString Result;
	Result.Reserve(Len());
	int32 Count = 0;
	int32 CopiedTo = 0;
	for (; Found != INDEX_NONE; Found = Text.Find(Search, CopiedTo, SearchCase))
	{
		Result.Append(Text.Mid(CopiedTo, Found - CopiedTo)).Append(FStringView(ReplacementText));
		CopiedTo = Found + Search.Len();
		++Count;
	}
	Result.Append(Text.Mid(CopiedTo));
	*this = MoveTemp(Result);
	return Count;
}

bool FString::ReplaceCharInline(TCHAR From, TCHAR To, ESearchCase::Type SearchCase)
{
	bool bReplaced = false;
	for (int32 Index = 0; Index < Len(); ++Index)
	{
		TCHAR& C = (*this)[Index];
		if (C == From || (SearchCase == ESearchCase::IgnoreCase && FChar::ToLower(C) == FChar::ToLower(From)))
		{
			C = To;
			bReplaced = true;
		}
	}
	return bReplaced;
}

int32 FString::ParseIntoArray(TArray<FString>& OutArray, const TCHAR* Delimiter, bool bInCullEmpty) const
{
	return ParseIntoArray(OutArray, &Delimiter, 1, bInCullEmpty);
}

namespace UnrealString
{
/** Delimiters in the order in which they are tried. */
class FDelimiters
{
public:
	FDelimiters(const TCHAR* const* Delimiters, int32 NumDelimiters)
	{
		for (int32 Index = 0; Index < NumDelimiters; ++Index)
		{
			const FStringView Delimiter(Delimiters[Index]);
			if (!Delimiter.IsEmpty())
			{
				All.Add(Delimiter);
			}
		}
	}

	/** The length of the delimiter that begins at a place; 0 when none does. */
	int32 LengthAt(const TCHAR* Place, const TCHAR* End) const
	{
		for (const FStringView& Delimiter : All)
		{
			if (*Place == *Delimiter.begin() && End - Place >= Delimiter.Len() &&
				std::equal(Delimiter.begin(), Delimiter.end(), Place))
			{
				return Delimiter.Len();
			}
		}
		return 0;
	}

private:
	TArray<FStringView> All;
};
}

int32 FString::ParseIntoArray(
	TArray<FString>& OutArray, const TCHAR* const* Delimiters, int32 NumDelimiters, bool bInCullEmpty) const
{
	OutArray.Reset();
	if (IsEmpty())
	{
		return 0;
	}
	const UnrealString::FDelimiters AllDelimiters(Delimiters, NumDelimiters);
	const TCHAR* const End = **this + Len();
	const TCHAR* PieceStart = **this;
	const auto AddPiece = [&](const TCHAR* PieceEnd) {
		if (PieceEnd > PieceStart || !bInCullEmpty)
		{
			OutArray.Emplace(FStringView(PieceStart, static_cast<int32>(PieceEnd - PieceStart)));
		}
	};
	for (const TCHAR* Place = PieceStart; Place < End;)
	{
		const int32 Length = AllDelimiters.LengthAt(Place, End);
		if (Length == 0)
		{
			++Place;
			continue;
		}
		AddPiece(Place);
		Place += Length;
		PieceStart = Place;
	}
	AddPiece(End);
	return OutArray.Num();
}

int32 FString::ParseIntoArrayLines(TArray<FString>& OutArray, bool bInCullEmpty) const
{
	const TCHAR* const LineEnds[] = { TEXT("\r\n"), TEXT("\r"), TEXT("\n") };
	return ParseIntoArray(OutArray, LineEnds, UE_ARRAY_COUNT(LineEnds), bInCullEmpty);
}

int32 FString::ParseIntoArrayWS(TArray<FString>& OutArray, const TCHAR* ExtraDelimiter, bool bInCullEmpty) const
{
	const TCHAR* const Delimiters[] = { TEXT(" "), TEXT("\t"), TEXT("\r"), TEXT("\n"), TEXT(""),
		ExtraDelimiter ? ExtraDelimiter : TEXT("") };
	return ParseIntoArray(OutArray, Delimiters, UE_ARRAY_COUNT(Delimiters), bInCullEmpty);
}

bool FString::Split(const FString& InStr, FString* LeftS, FString* RightS, ESearchCase::Type SearchCase,
	ESearchDir::Type SearchDir) const
{
	checkf(LeftS != RightS || !LeftS, TEXT("Split needs two different outputs"));
	const int32 Found = Find(FStringView(InStr), SearchCase, SearchDir);
	if (Found == INDEX_NONE)
	{
		return false;
	}
	FString NewLeft = Left(Found);
	FString NewRight = Mid(Found + InStr.Len());
	if (LeftS)
	{
		*LeftS = MoveTemp(NewLeft);
	}
	if (RightS)
	{
		*RightS = MoveTemp(NewRight);
	}
	return true;
}

FString FString::TrimStart() const
{
	int32 Start = 0;
	while (Start < Len() && FChar::IsWhitespace((*this)[Start]))
	{
		++Start;
	}
	return RightChop(Start);
}

FString FString::TrimEnd() const
{
	int32 End = Len();
	while (End > 0 && FChar::IsWhitespace((*this)[End - 1]))
	{
		--End;
	}
	return Left(End);
}

FString FString::TrimChar(TCHAR CharacterToTrim, bool* bCharRemoved) const
{
	FStringView Text(*this);
	if (Text.Len() > 0 && Text[0] == CharacterToTrim)
	{
		Text = Text.RightChop(1);
	}
	if (Text.Len() > 0 && Text[Text.Len() - 1] == CharacterToTrim)
	{
		Text = Text.LeftChop(1);
	}
	if (bCharRemoved)
	{
		*bCharRemoved = Text.Len() != Len();
	}
	return FString(Text);
}

FString FString::ToLower() const
{
	FString Result = *this;
	std::transform(Result.begin(), Result.end(), const_cast<TCHAR*>(Result.begin()), FChar::ToLower);
	return Result;
}

FString FString::ToUpper() const
{
	FString Result = *this;
	std::transform(Result.begin(), Result.end(), const_cast<TCHAR*>(Result.begin()), FChar::ToUpper);
	return Result;
}

namespace StringEscapes
{
struct FEscape
{
	TCHAR Plain;
	TCHAR Escaped;
};
constexpr FEscape Escapes[] = { { u'\n', u'n' }, { u'\r', u'r' }, { u'\t', u't' }, { u'\'', u'\'' }, { u'\\', u'\\' },
	{ u'"', u'"' } };
}

FString FString::ReplaceCharWithEscapedChar() const
{
	FString Result;
	for (const TCHAR C : *this)
	{
		TCHAR Escaped = 0;
		for (const StringEscapes::FEscape& Escape : StringEscapes::Escapes)
		{
			Escaped = Escape.Plain == C ? Escape.Escaped : Escaped;
		}
		if (Escaped)
		{
			Result.AppendChar(u'\\');
		}
		Result.AppendChar(Escaped ? Escaped : C);
	}
	return Result;
}

FString FString::ReplaceEscapedCharWithChar() const
{
	FString Result;
	for (int32 Index = 0; Index < Len(); ++Index)
	{
		TCHAR C = (*this)[Index];
		if (C == u'\\' && Index + 1 < Len())
		{
			for (const StringEscapes::FEscape& Escape : StringEscapes::Escapes)
			{
				if (Escape.Escaped == (*this)[Index + 1])
				{
					C = Escape.Plain;
					++Index;
					break;
				}
			}
		}
		Result.AppendChar(C);
	}
	return Result;
}

bool FString::IsNumeric() const
{
	FStringView Text(*this);
	if (Text.Len() > 0 && (Text[0] == u'-' || Text[0] == u'+'))
	{
		Text = Text.RightChop(1);
	}
	bool bHasDot = false;
	for (const TCHAR C : Text)
	{
		const bool bFirstDot = C == u'.' && !bHasDot;
		bHasDot |= bFirstDot;
		if (!bFirstDot && !FChar::IsDigit(C))
		{
			return false;
		}
	}
	return !Text.IsEmpty();
}

FString FString::FromInt(int32 Number)
{
	return UnrealString::FromInteger(Number);
}

FString FString::SanitizeFloat(double Number, int32 MinFractionalDigits)
{
	FString Text = Printf(TEXT("%f"), Number == 0.0 ? 0.0 : Number);
	int32 Dot = INDEX_NONE;
	if (!Text.FindChar(u'.', Dot))
	{
		return Text; // inf, nan
	}
	while (Text.Len() - Dot - 1 > MinFractionalDigits && Text[Text.Len() - 1] == u'0')
	{
		Text.LeftChopInline(1);
	}
	if (Text[Text.Len() - 1] == u'.')
	{
		Text.LeftChopInline(1);
	}
	return Text;
}

FString FString::ChrN(int32 Count, TCHAR C)
{
	FString Result;
	Result.Reserve(Count);
	for (int32 Index = 0; Index < Count; ++Index)
	{
		Result.AppendChar(C);
	}
	return Result;
}

FString LexToString(bool Value)
{
	return Value ? TEXT("true") : TEXT("false");
}

FString LexToString(int32 Value)
{
	return UnrealString::FromInteger(Value);
}

FString LexToString(uint32 Value)
{
	return UnrealString::FromInteger(Value);
}

FString LexToString(int64 Value)
{
	return UnrealString::FromInteger(Value);
}

FString LexToString(uint64 Value)
{
	return UnrealString::FromInteger(Value);
}

FString LexToString(float Value)
{
	return FString::Printf(TEXT("%f"), Value);
}

FString LexToString(double Value)
{
	return FString::Printf(TEXT("%f"), Value);
}
