#pragma once

#include "CoreMinimal.h"

namespace KestrelMarkdown
{
inline bool IsBlank(TCHAR Character)
{
	return Character == TEXT(' ') || Character == TEXT('\t');
}

inline bool IsPunctuation(TCHAR Character)
{
	return (Character >= 0x21 && Character <= 0x2F) || (Character >= 0x3A && Character <= 0x40) ||
		   (Character >= 0x5B && Character <= 0x60) || (Character >= 0x7B && Character <= 0x7E);
}

/** Punctuation of other scripts as well, as far as it stands beside words in ordinary text. */
inline bool IsAnyPunctuation(TCHAR Character)
{
	return IsPunctuation(Character) || Character == 0xA1 || Character == 0xA7 || Character == 0xAB ||
		   Character == 0xB6 || Character == 0xB7 || Character == 0xBB || Character == 0xBF ||
		   (Character >= 0x2010 && Character <= 0x2027) || (Character >= 0x2030 && Character <= 0x205E) ||
		   (Character >= 0x3001 && Character <= 0x3003) || (Character >= 0x3008 && Character <= 0x3011) ||
		   (Character >= 0x3014 && Character <= 0x301F) || (Character >= 0xFF01 && Character <= 0xFF0F);
}

inline bool IsAnySpace(TCHAR Character)
{
	return IsBlank(Character) || (Character >= 0x0A && Character <= 0x0D) || Character == 0xA0 ||
		   (Character >= 0x2000 && Character <= 0x200A) || Character == 0x202F || Character == 0x205F ||
		   Character == 0x3000;
}

inline bool IsDigit(TCHAR Character)
{
	return Character >= TEXT('0') && Character <= TEXT('9');
}

inline bool IsLetter(TCHAR Character)
{
	return (Character >= TEXT('a') && Character <= TEXT('z')) || (Character >= TEXT('A') && Character <= TEXT('Z'));
}
}
