#include "Agent/Tools/DisplayText.h"

namespace KestrelDisplayText
{
struct FCharacterRange
{
	uint32 First;
	uint32 Last; // included
};

/** Characters without a shape of their own, or that change the shape or order of others. */
const FCharacterRange UnseenRanges[] = {
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
	{ 0x2800, 0x2800 },                     // Braille blank
	{ 0x3000, 0x3000 },                     // ideographic space
	{ 0x3164, 0x3164 },                     // Hangul filler
	{ 0xD800, 0xDFFF },                     // surrogates without a partner
	{ 0xFE00, 0xFE0F },                     // variation selectors
	{ 0xFEFF, 0xFEFF },                     // byte order mark
	{ 0xFFA0, 0xFFA0 },                     // halfwidth Hangul filler
	{ 0xFFF0, 0xFFFB },                     // interlinear annotations
	{ 0xFFFC, 0xFFFC },                     // object replacement
	{ 0x1BCA0, 0x1BCA3 },                   // shorthand format controls
	{ 0x1D173, 0x1D17A },                   // musical format controls
	{ 0xFFFC, 0xFFFC },                     // object replacement
	{ 0x1BCA0, 0x1BCA3 },                   // shorthand format controls
	{ 0x1D173, 0x1D17A },                   // musical format controls
	{ 0xE0000, 0xE0FFF },                   // tags and further variation selectors
};

bool IsUnseen(uint32 Character)
{
	for (const FCharacterRange& Range : UnseenRanges)
	{
		if (Character >= Range.First && Character <= Range.Last)
		{
			return true;
		}
	}
	return false;
}

FString EscapeCharacter(uint32 Character)
{
	switch (Character)
	{
	case '\n':
		return TEXT("\\n");
	case '\r':
		return TEXT("\\r");
	case '\t':
		return TEXT("\\t");
	default:
		return Character > 0xFFFF ? FString::Printf(TEXT("\\U%08X"), Character)
								  : FString::Printf(TEXT("\\u%04X"), Character);
	}
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

FString Escape(const FString& Text, TFunctionRef<bool(uint32)> IsKept)
{
	FString Escaped;
	Escaped.Reserve(Text.Len());
	for (int32 Index = 0; Index < Text.Len(); ++Index)
	{
		const int32 Begin = Index;
		const uint32 Character = ReadCharacter(Text, Index);
		if (IsUnseen(Character) && !IsKept(Character))
		{
			Escaped += EscapeCharacter(Character);
		}
		else
		{
			Escaped.Append(*Text + Begin, Index - Begin + 1);
		}
	}
	return Escaped;
}

FString EscapeLine(const FString& Text)
{
	return Escape(Text, [](uint32) { return false; });
}

FString EscapeLines(const FString& Text)
{
	// A carriage return alone moves the text that follows over the one before in some views.
	return Escape(Text.Replace(TEXT("\r\n"), TEXT("\n"), ESearchCase::CaseSensitive),
		[](uint32 Character) { return Character == '\n' || Character == '\t'; });
}
}
