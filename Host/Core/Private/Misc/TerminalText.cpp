#include "Misc/TerminalText.h"

namespace TerminalText
{
struct FCharacterRange
{
	uint32 First;
	uint32 Last; // included
};

const FCharacterRange UnsafeRanges[] = {
	{ 0x0000, 0x0008 }, { 0x000B, 0x001F }, // control characters, without tab and newline
	{ 0x007F, 0x009F },                     // delete, and the control characters of 8 bits
	{ 0x061C, 0x061C },                     // Arabic letter mark
	{ 0x180E, 0x180E },                     // Mongolian vowel separator
	{ 0x200B, 0x200B },                     // zero-width space
	{ 0x200E, 0x200F },                     // direction marks
	{ 0x2028, 0x202E },                     // line and paragraph separators, direction embeddings and overrides
	{ 0x2060, 0x206F },                     // word joiner, invisible operators, direction isolates
	{ 0xFEFF, 0xFEFF },                     // byte order mark
	{ 0xFFF9, 0xFFFB },                     // interlinear annotations
	{ 0xE0000, 0xE0FFF },                   // tags and variation selectors
};

bool IsUnsafe(uint32 Character)
{
	for (const FCharacterRange& Range : UnsafeRanges)
	{
		if (Character >= Range.First && Character <= Range.Last)
		{
			return true;
		}
	}
	return false;
}

bool IsPair(uint32 First, uint32 Second)
{
	return First >= 0xD800 && First <= 0xDBFF && Second >= 0xDC00 && Second <= 0xDFFF;
}

FString Escape(uint32 Character)
{
	return Character > 0xFFFF ? FString::Printf(TEXT("\\U%08X"), Character)
							  : FString::Printf(TEXT("\\u%04X"), Character);
}
}

FString MakeTerminalText(const FString& Text)
{
	FString Safe;
	Safe.Reserve(Text.Len());
	for (int32 Index = 0; Index < Text.Len(); ++Index)
	{
		const uint32 Unit = static_cast<uint32>(Text[Index]);
		const uint32 Next = Index + 1 < Text.Len() ? static_cast<uint32>(Text[Index + 1]) : 0;
		if (Unit == '\r' && Next == '\n')
		{
			continue;
		}
		const bool bIsPair = TerminalText::IsPair(Unit, Next);
		const uint32 Character = bIsPair ? 0x10000 + ((Unit - 0xD800) << 10) + (Next - 0xDC00) : Unit;
		if (TerminalText::IsUnsafe(Character))
		{
			Safe += TerminalText::Escape(Character);
		}
		else
		{
			Safe.Append(*Text + Index, bIsPair ? 2 : 1);
		}
		Index += bIsPair ? 1 : 0;
	}
	return Safe;
}
