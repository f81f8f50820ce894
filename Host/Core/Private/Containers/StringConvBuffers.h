#pragma once

#include "HAL/Platform.h"

/** Conversions into memory that is large enough, for those who have it already. */
namespace StringConv
{
/** Of one UTF-16 unit come at most so many bytes: a pair has four, for two units. */
constexpr int32 MaxBytesOfUnit = 3;

/** Lone surrogates become U+FFFD. @return the number of bytes written */
int32 EncodeUtf8(const TCHAR* Source, int32 SourceLength, ANSICHAR* Out);
/** Each byte that is not part of valid UTF-8 becomes U+FFFD. @return the number of units written, at most SourceLength
 */
int32 DecodeUtf8(const ANSICHAR* Source, int32 SourceLength, TCHAR* Out);
}
