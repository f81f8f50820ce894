#include "Agent/Text/DisplayText.h"

namespace KestrelDisplayText
{
struct FCharacterRange
{
	uint32 First;
	uint32 Last; // included
};

/** Characters without a shape of their own, that change the shape or order of others, or that imitate an escape. */
const FCharacterRange EscapedRanges[] = {
	{ 0x0000, 0x001F },                     // control characters
	{ 0x007F, 0x009F }, { 0x00A0, 0x00A0 }, // no-break space
	{ 0x00AD, 0x00AD },                     // soft hyphen
	{ 0x034F, 0x034F },                     // combining grapheme joiner
	{ 0x061C, 0x061C },                     // Arabic letter mark
	{ 0x115F, 0x1160 },                     // Hangul fillers
	{ 0x17B4, 0x17B5 },                     // Khmer inherent vowels
	{ 0x180B, 0x180F },                     // Mongolian separators
	{ 0x2000, 0x200F },                     // spaces of other widths, zero-width characters, direction marks
	{ 0x2028, 0x202F },                     // line and paragraph separators, direction embeddings and overrides
	{ 0x205F, 0x206F },                     // invisible operators, direction isolates
	{ 0x2329, 0x232A }, { 0x276C, 0x276D }, // brackets like those of escapes
	{ 0x27E8, 0x27E9 },                     // the brackets of escapes
	{ 0x2800, 0x2800 },                     // Braille blank
	{ 0x29FC, 0x29FD },                     // brackets like those of escapes
	{ 0x3000, 0x3000 },                     // ideographic space
	{ 0x3008, 0x3009 },                     // brackets like those of escapes
	{ 0x3164, 0x3164 },                     // Hangul filler
	{ 0xD800, 0xDFFF },                     // surrogates without a partner
	{ 0xFE00, 0xFE0F },                     // variation selectors
	{ 0xFEFF, 0xFEFF },                     // byte order mark
	{ 0xFFA0, 0xFFA0 },                     // halfwidth Hangul filler
	{ 0xFFF0, 0xFFFB },                     // interlinear annotations
	{ 0xFFFC, 0xFFFC },                     // object replacement
	{ 0x1BCA0, 0x1BCA3 },                   // shorthand format controls
	{ 0x1D173, 0x1D17A },                   // musical format controls
	{ 0xE0000, 0xE0FFF },                   // tags and further variation selectors
};

/** Of these, what is escaped in prose as well. */
const FCharacterRange DirectionRanges[] = {
	{ 0x0000, 0x0008 }, { 0x000B, 0x001F }, { 0x007F, 0x009F }, // control characters
	{ 0x061C, 0x061C }, { 0x200E, 0x200F },                     // direction marks
	{ 0x2028, 0x202E },                                         // separators, embeddings and overrides
	{ 0x2066, 0x206F },                                         // isolates
	{ 0xD800, 0xDFFF },                                         // surrogates without a partner
};

/** Marks that stand above, below or through the letter before them, in any number. */
const FCharacterRange MarkRanges[] = {
	{ 0x0300, 0x036F }, { 0x1AB0, 0x1AFF }, { 0x1DC0, 0x1DFF }, { 0x20D0, 0x20FF },
	{ 0xFE20, 0xFE2F },                                                             // of any letters
	{ 0x0483, 0x0489 }, { 0x2DE0, 0x2DFF }, { 0xA66F, 0xA67D },                     // Cyrillic
	{ 0x0591, 0x05BD }, { 0x0610, 0x061A }, { 0x064B, 0x065F }, { 0x06D6, 0x06DC }, // Hebrew and Arabic
	{ 0x0E34, 0x0E3A }, { 0x0E47, 0x0E4E }, { 0x0EB4, 0x0EBC }, { 0x0EC8, 0x0ECE }, // Thai and Lao
};
/** In a row; a letter of any language has no more. */
constexpr int32 MaxMarks = 2;

const FCharacterRange LatinRanges[] = { { 'A', 'Z' }, { 'a', 'z' }, { 0x00C0, 0x024F }, { 0x1E00, 0x1EFF } };
/** Alphabets with letters in the shape of Latin ones. */
const FCharacterRange RelatedRanges[] = {
	{ 0x0370, 0x03FF }, { 0x1F00, 0x1FFF },                                         // Greek
	{ 0x0400, 0x052F }, { 0x1C80, 0x1C8F }, { 0x2DE0, 0x2DFF }, { 0xA640, 0xA69F }, // Cyrillic
	{ 0x0530, 0x058F },                                                             // Armenian
	{ 0x13A0, 0x13FF }, { 0xAB70, 0xABBF },                                         // Cherokee
	{ 0x2C80, 0x2CFF },                                                             // Coptic
	{ 0xA4D0, 0xA4FF },                                                             // Lisu
};
/** Latin letters, and the marks that divide paths, under other numbers. */
const FCharacterRange StyledRanges[] = {
	{ 0x2024, 0x2024 }, { 0xFE52, 0xFE52 }, { 0xFF0E, 0xFF0F }, { 0xFF1A, 0xFF1A }, // dots, slash and colon
	{ 0x2044, 0x2044 }, { 0x2215, 0x2216 }, { 0x29F5, 0x29F9 }, { 0xFF3C, 0xFF3C }, // strokes and backslashes
	{ 0xA789, 0xA789 },                                                             // colon of phonetics
	{ 0x0250, 0x02AF }, { 0x1D00, 0x1DBF }, { 0xAB30, 0xAB6F },                     // phonetic
	{ 0x2102, 0x2102 }, { 0x210A, 0x2113 }, { 0x2115, 0x2115 }, { 0x2119, 0x211D }, // letterlike symbols
	{ 0x2124, 0x2124 }, { 0x2128, 0x2128 }, { 0x212A, 0x2139 }, { 0x2145, 0x2149 },
	{ 0x2160, 0x217F },                     // Roman numerals
	{ 0xFB00, 0xFB06 },                     // ligatures
	{ 0xFF21, 0xFF3A }, { 0xFF41, 0xFF5A }, // full width
	{ 0x1D400, 0x1D7FF },                   // mathematical
};
/** Greek and Cyrillic letters that cannot be told from Latin ones. */
const TCHAR* const LookAlikes =
	TEXT("\u0391\u0392\u0395\u0396\u0397\u0399\u039A\u039C\u039D\u039F\u03A1\u03A4\u03A5\u03A7\u03BD\u03BF\u03F2\u03F3"
		 "\u0405\u0406\u0408\u0410\u0412\u0415\u041A\u041C\u041D\u041E\u0420\u0421\u0422\u0423\u0425\u04AE\u051A\u051C"
		 "\u0430\u0435\u043E\u0440\u0441\u0443\u0445\u0455\u0456\u0458\u04BB\u04CF\u0501\u051B\u051D");

bool IsIn(TArrayView<const FCharacterRange> Ranges, uint32 Character)
{
	for (const FCharacterRange& Range : Ranges)
	{
		if (Character >= Range.First && Character <= Range.Last)
		{
			return true;
		}
	}
	return false;
}

bool IsLookAlike(uint32 Character)
{
	for (const TCHAR* Each = LookAlikes; *Each; ++Each)
	{
		if (static_cast<uint32>(*Each) == Character)
		{
			return true;
		}
	}
	return false;
}

FString NameCharacter(uint32 Character)
{
	switch (Character)
	{
	case '\n':
		return TEXT("LF");
	case '\r':
		return TEXT("CR");
	case '\t':
		return TEXT("TAB");
	default:
		return FString::Printf(TEXT("U+%04X"), Character);
	}
}

/** In brackets that a text cannot have: its own are escaped. A backslash would do that to every path and script. */
FString Bracket(const FString& Name)
{
	return TEXT("\u27E8") + Name + TEXT("\u27E9");
}

/** The character at Index; a surrogate pair counts as one, and moves Index to its second half. */
uint32 ReadCharacter(const FString& Text, int32& Index)
{
	const uint32 First = static_cast<uint32>(Text[Index]);
	const bool bHigh = First >= 0xD800 && First <= 0xDBFF;
	const uint32 Second = bHigh && Index + 1 < Text.Len() ? static_cast<uint32>(Text[Index + 1]) : 0;
	if (Second < 0xDC00 || Second > 0xDFFF)
	{
		return First;
	}
	++Index;
	return 0x10000 + ((First - 0xD800) << 10) + (Second - 0xDC00);
}

/** What some compilers and interpreters take for the end of a line, and so of a comment. */
bool IsLineEnding(uint32 Character)
{
	return Character == '\r' || Character == 0x0085 || Character == 0x2028 || Character == 0x2029;
}

FString Escape(const FString& Text, TFunctionRef<bool(uint32)> IsKept, bool bBreakLines)
{
	FString Escaped;
	Escaped.Reserve(Text.Len());
	int32 NumMarks = 0;
	for (int32 Index = 0; Index < Text.Len(); ++Index)
	{
		const int32 Begin = Index;
		while (Index < Text.Len() && Text[Index] >= 0x20 && Text[Index] < 0x7F)
		{
			++Index;
		}
		if (Index > Begin)
		{
			Escaped.Append(*Text + Begin, Index - Begin);
			NumMarks = 0;
			--Index;
			continue;
		}
		const uint32 Character = ReadCharacter(Text, Index);
		NumMarks = IsIn(MarkRanges, Character) ? NumMarks + 1 : 0;
		if (NumMarks > MaxMarks || (IsIn(EscapedRanges, Character) && !IsKept(Character)))
		{
			Escaped += Bracket(NameCharacter(Character));
			if (bBreakLines && IsLineEnding(Character))
			{
				Escaped.AppendChar(u'\n');
			}
		}
		else
		{
			Escaped.Append(*Text + Begin, Index - Begin + 1);
		}
	}
	return Escaped;
}

/**
 * Spaces can push the rest of a name into a line of its own, or out of view, and are not seen at its ends: all but
 * single ones between other characters are told by their number.
 */
FString NameBlanks(const FString& Text)
{
	FString Named;
	Named.Reserve(Text.Len());
	for (int32 Index = 0; Index < Text.Len();)
	{
		int32 End = Index;
		while (End < Text.Len() && Text[End] == TEXT(' '))
		{
			++End;
		}
		const int32 NumBlanks = End - Index;
		if (NumBlanks > 1 || (NumBlanks == 1 && (Index == 0 || End == Text.Len())))
		{
			Named +=
				Bracket(FString::Printf(TEXT("%d %s"), NumBlanks, NumBlanks == 1 ? TEXT("space") : TEXT("spaces")));
			Index = End;
			continue;
		}
		Named.AppendChar(Text[Index]);
		++Index;
	}
	return Named;
}

/** Letters in a row, and what they could be taken for. */
struct FWord
{
	/** @return false for what is no letter, or one of an alphabet that nobody takes for Latin */
	bool Add(uint32 Character)
	{
		const bool bIsLatin = IsIn(LatinRanges, Character);
		const bool bIsStyled = IsIn(StyledRanges, Character);
		if (!bIsLatin && !bIsStyled && !IsIn(RelatedRanges, Character))
		{
			return false;
		}
		bHasLatin |= bIsLatin;
		bHasStyled |= bIsStyled;
		bOnlyLookAlikes &= IsLookAlike(Character);
		if (!bIsLatin)
		{
			Names.Add(NameCharacter(Character));
		}
		return true;
	}
	TArray<FString> GetLookAlikes() const
	{
		return bHasLatin || bHasStyled || bOnlyLookAlikes ? Names : TArray<FString>();
	}

	TArray<FString> Names; // of its letters that are not Latin
	bool bHasLatin = false;
	bool bHasStyled = false;
	bool bOnlyLookAlikes = true;
};

FString FindLookAlikes(const FString& Text)
{
	TArray<FString> Found;
	FWord Word;
	for (int32 Index = 0; Index < Text.Len(); ++Index)
	{
		if (!Word.Add(ReadCharacter(Text, Index)))
		{
			Found += Word.GetLookAlikes();
			Word = FWord();
		}
	}
	Found += Word.GetLookAlikes();
	return FString::Join(Found, TEXT(" "));
}

FString EscapeLine(const FString& Text)
{
	constexpr bool bBreakLines = false;
	return NameBlanks(Escape(
		Text, [](uint32) { return false; }, bBreakLines));
}

FString EscapeLines(const FString& Text)
{
	constexpr bool bBreakLines = true;
	return Escape(
		Text.Replace(TEXT("\r\n"), TEXT("\n"), ESearchCase::CaseSensitive),
		[](uint32 Character) { return Character == '\n' || Character == '\t'; }, bBreakLines);
}

FString EscapeDirections(const FString& Text)
{
	constexpr bool bBreakLines = false;
	return Escape(
		Text, [](uint32 Character) { return !IsIn(DirectionRanges, Character); }, bBreakLines);
}

FString Elide(const FString& Text, int32 MaxLength)
{
	const int32 Half = MaxLength / 2;
	return Text.Len() <= MaxLength ? Text : Text.Left(Half) + TEXT(" \u2026 ") + Text.Right(Half);
}

bool IsWorthComparing(const FString& Before, const FString& After)
{
	constexpr int64 MaxCharacters = 4000000;
	constexpr int32 MaxLines = 100000;
	if (static_cast<int64>(Before.Len()) + After.Len() > MaxCharacters)
	{
		return false;
	}
	int32 NumLines = 0;
	for (const FString* Text : { &Before, &After })
	{
		for (const TCHAR C : *Text)
		{
			NumLines += C == u'\n' ? 1 : 0;
		}
	}
	return NumLines <= MaxLines;
}
}
