#include "TerminalText.h"

namespace TerminalText
{
bool IsUnsafe(TCHAR Character)
{
	const bool bControl =
		(Character < 0x20 && Character != u'\n' && Character != u'\t') || (Character >= 0x7F && Character <= 0x9F);
	const bool bDirection = Character == 0x061C || Character == 0x200E || Character == 0x200F ||
							(Character >= 0x202A && Character <= 0x202E) ||
							(Character >= 0x2066 && Character <= 0x2069);
	return bControl || bDirection;
}
}

FString MakeTerminalText(const FString& Text)
{
	FString Safe;
	Safe.Reserve(Text.Len());
	for (int32 Index = 0; Index < Text.Len(); ++Index)
	{
		const TCHAR Character = Text[Index];
		const bool bEndsLine = Character == u'\r' && Index + 1 < Text.Len() && Text[Index + 1] == u'\n';
		if (bEndsLine)
		{
			continue;
		}
		if (TerminalText::IsUnsafe(Character))
		{
			Safe += FString::Printf(TEXT("\\u%04X"), static_cast<uint32>(Character));
		}
		else
		{
			Safe.AppendChar(Character);
		}
	}
	return Safe;
}
