#pragma once

#include "Containers/Array.h"
#include "HAL/Platform.h"

/** UTF-16 text as UTF-8 bytes, terminated; lives as long as the object. Lone surrogates become U+FFFD. */
class FTCHARToUTF8
{
public:
	explicit FTCHARToUTF8(const TCHAR* Source);
	FTCHARToUTF8(const TCHAR* Source, int32 SourceLength);
	const ANSICHAR* Get() const { return Bytes.GetData(); }
	int32 Length() const { return Bytes.Num() - 1; }
	operator const ANSICHAR*() const { return Get(); }

private:
	TArray<ANSICHAR> Bytes;
};

/** UTF-8 bytes as UTF-16 text, terminated; each byte that is not part of valid UTF-8 becomes U+FFFD. */
class FUTF8ToTCHAR
{
public:
	explicit FUTF8ToTCHAR(const ANSICHAR* Source);
	FUTF8ToTCHAR(const ANSICHAR* Source, int32 SourceLength);
	const TCHAR* Get() const { return Units.GetData(); }
	int32 Length() const { return Units.Num() - 1; }
	operator const TCHAR*() const { return Get(); }

private:
	TArray<TCHAR> Units;
};

// Each yields a pointer into a temporary that dies at the end of the full expression.
#define TCHAR_TO_UTF8(str) (FTCHARToUTF8(static_cast<const TCHAR*>(str)).Get())
#define UTF8_TO_TCHAR(str) (FUTF8ToTCHAR(reinterpret_cast<const ANSICHAR*>(str)).Get())
#define TCHAR_TO_ANSI(str) TCHAR_TO_UTF8(str)
#define ANSI_TO_TCHAR(str) UTF8_TO_TCHAR(str)
