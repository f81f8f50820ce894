#include "Containers/StringConvBuffers.h"

#include "Containers/StringConv.h"
#include "Misc/CString.h"

#include <cstring>

namespace StringConv
{
constexpr uint32 ReplacementCharacter = 0xFFFD;
constexpr int32 UnitsBetweenBlocks = 64; // after a unit beyond ASCII: others are likely to be near

constexpr bool IsHighSurrogate(TCHAR C)
{
	return C >= 0xD800 && C <= 0xDBFF;
}

constexpr bool IsLowSurrogate(TCHAR C)
{
	return C >= 0xDC00 && C <= 0xDFFF;
}

int32 EncodeCodePoint(uint32 CodePoint, ANSICHAR* Out)
{
	const auto Tail = [CodePoint](int32 Shift) { return static_cast<ANSICHAR>(0x80 | ((CodePoint >> Shift) & 0x3F)); };
	if (CodePoint < 0x80)
	{
		Out[0] = static_cast<ANSICHAR>(CodePoint);
		return 1;
	}
	if (CodePoint < 0x800)
	{
		Out[0] = static_cast<ANSICHAR>(0xC0 | (CodePoint >> 6));
		Out[1] = Tail(0);
		return 2;
	}
	if (CodePoint < 0x10000)
	{
		Out[0] = static_cast<ANSICHAR>(0xE0 | (CodePoint >> 12));
		Out[1] = Tail(6);
		Out[2] = Tail(0);
		return 3;
	}
	Out[0] = static_cast<ANSICHAR>(0xF0 | (CodePoint >> 18));
	Out[1] = Tail(12);
	Out[2] = Tail(6);
	Out[3] = Tail(0);
	return 4;
}

/** The sequence at At, as RFC 3629 has it: no overlong forms, no surrogates. Returns its bytes, 0 when it is invalid.
 */
int32 DecodeCodePoint(const uint8* At, const uint8* End, uint32& OutCodePoint)
{
	const uint8 Lead = *At;
	const int32 Length = Lead < 0x80 ? 1 : Lead < 0xC2 ? 0 : Lead < 0xE0 ? 2 : Lead < 0xF0 ? 3 : Lead < 0xF5 ? 4 : 0;
	if (Length == 0 || End - At < Length)
	{
		return 0;
	}
	OutCodePoint = Length == 1 ? Lead : Lead & (0x7F >> Length);
	for (int32 Index = 1; Index < Length; ++Index)
	{
		if ((At[Index] & 0xC0) != 0x80)
		{
			return 0;
		}
		OutCodePoint = (OutCodePoint << 6) | (At[Index] & 0x3F);
	}
	const bool bOverlong = (Length == 3 && OutCodePoint < 0x800) || (Length == 4 && OutCodePoint < 0x10000);
	const bool bSurrogate = OutCodePoint >= 0xD800 && OutCodePoint <= 0xDFFF;
	return bOverlong || bSurrogate || OutCodePoint > 0x10FFFF ? 0 : Length;
}

/**
 * Copies units below 0x80, in blocks that the compiler turns into wide steps: most text is nothing else.
 *
 * @return how many were copied; what follows is fewer than a block, or has something else in it
 */
template <typename ToType, typename FromType>
int32 CopyAsciiBlocks(const FromType* Source, int32 Length, ToType* Out)
{
	constexpr int32 BlockLength = 32;
	int32 Copied = 0;
	for (; Length - Copied >= BlockLength; Copied += BlockLength)
	{
		FromType AllBits = 0;
		for (int32 Index = 0; Index < BlockLength; ++Index)
		{
			AllBits |= Source[Copied + Index];
		}
		if (AllBits >= 0x80)
		{
			break;
		}
		for (int32 Index = 0; Index < BlockLength; ++Index)
		{
			Out[Copied + Index] = static_cast<ToType>(Source[Copied + Index]);
		}
	}
	return Copied;
}
}

int32 StringConv::EncodeUtf8(const TCHAR* Source, int32 SourceLength, ANSICHAR* Out)
{
	ANSICHAR* const Begin = Out;
	int32 NextBlocks = 0; // where it is worth to look for blocks again
	for (int32 Index = 0; Index < SourceLength; ++Index)
	{
		if (Index >= NextBlocks)
		{
			const int32 Copied = CopyAsciiBlocks(Source + Index, SourceLength - Index, Out);
			Out += Copied;
			Index += Copied;
			NextBlocks = Index + UnitsBetweenBlocks;
			if (Index == SourceLength)
			{
				break;
			}
		}
		uint32 CodePoint = Source[Index];
		if (IsHighSurrogate(Source[Index]) && Index + 1 < SourceLength && IsLowSurrogate(Source[Index + 1]))
		{
			CodePoint = 0x10000 + ((CodePoint - 0xD800u) << 10) + (Source[++Index] - 0xDC00u);
		}
		else if (IsHighSurrogate(Source[Index]) || IsLowSurrogate(Source[Index]))
		{
			CodePoint = ReplacementCharacter;
		}
		Out += EncodeCodePoint(CodePoint, Out);
	}
	return static_cast<int32>(Out - Begin);
}

int32 StringConv::DecodeUtf8(const ANSICHAR* Source, int32 SourceLength, TCHAR* Out)
{
	TCHAR* const Begin = Out;
	const uint8* At = reinterpret_cast<const uint8*>(Source);
	const uint8* const End = At + SourceLength;
	const uint8* NextBlocks = At;
	while (At < End)
	{
		if (At >= NextBlocks)
		{
			const int32 Copied = CopyAsciiBlocks(At, static_cast<int32>(End - At), Out);
			Out += Copied;
			At += Copied;
			NextBlocks = At + UnitsBetweenBlocks;
			continue;
		}
		if (*At < 0x80)
		{
			*Out++ = *At++;
			continue;
		}
		uint32 CodePoint = ReplacementCharacter;
		const int32 Length = DecodeCodePoint(At, End, CodePoint);
		if (Length == 0)
		{
			CodePoint = ReplacementCharacter;
		}
		At += Length == 0 ? 1 : Length;
		if (CodePoint < 0x10000)
		{
			*Out++ = static_cast<TCHAR>(CodePoint);
			continue;
		}
		*Out++ = static_cast<TCHAR>(0xD800 + ((CodePoint - 0x10000) >> 10));
		*Out++ = static_cast<TCHAR>(0xDC00 + ((CodePoint - 0x10000) & 0x3FF));
	}
	return static_cast<int32>(Out - Begin);
}

FTCHARToUTF8::FTCHARToUTF8(const TCHAR* Source)
	: FTCHARToUTF8(Source, FCString::Strlen(Source))
{
}

FTCHARToUTF8::FTCHARToUTF8(const TCHAR* Source, int32 SourceLength)
{
	Bytes.SetNumUninitialized(SourceLength * StringConv::MaxBytesOfUnit + 1);
	const int32 Length = StringConv::EncodeUtf8(Source, SourceLength, Bytes.GetData());
	Bytes[Length] = 0;
	Bytes.SetNum(Length + 1);
}

FUTF8ToTCHAR::FUTF8ToTCHAR(const ANSICHAR* Source)
	: FUTF8ToTCHAR(Source, static_cast<int32>(std::strlen(Source)))
{
}

FUTF8ToTCHAR::FUTF8ToTCHAR(const ANSICHAR* Source, int32 SourceLength)
{
	Units.SetNumUninitialized(SourceLength + 1);
	const int32 Length = StringConv::DecodeUtf8(Source, SourceLength, Units.GetData());
	Units[Length] = 0;
	Units.SetNum(Length + 1);
}
