#pragma once

#include "HAL/Platform.h"

/** Questions about one character. Letters are told and folded within ASCII only. */
struct FChar
{
	static constexpr bool IsUpper(TCHAR C) { return C >= u'A' && C <= u'Z'; }
	static constexpr bool IsLower(TCHAR C) { return C >= u'a' && C <= u'z'; }
	static constexpr bool IsAlpha(TCHAR C) { return IsUpper(C) || IsLower(C); }
	static constexpr bool IsDigit(TCHAR C) { return C >= u'0' && C <= u'9'; }
	static constexpr bool IsHexDigit(TCHAR C)
	{
		return IsDigit(C) || (C >= u'a' && C <= u'f') || (C >= u'A' && C <= u'F');
	}
	static constexpr bool IsAlnum(TCHAR C) { return IsAlpha(C) || IsDigit(C); }
	static constexpr bool IsWhitespace(TCHAR C)
	{
		return C == u' ' || (C >= u'\t' && C <= u'\r') || C == 0x85 || C == 0xA0 || C == 0x2028 || C == 0x2029;
	}
	static constexpr bool IsLinebreak(TCHAR C)
	{
		return (C >= u'\n' && C <= u'\r') || C == 0x85 || C == 0x2028 || C == 0x2029;
	}
	static constexpr TCHAR ToLower(TCHAR C) { return IsUpper(C) ? static_cast<TCHAR>(C + 32) : C; }
	static constexpr TCHAR ToUpper(TCHAR C) { return IsLower(C) ? static_cast<TCHAR>(C - 32) : C; }
};
