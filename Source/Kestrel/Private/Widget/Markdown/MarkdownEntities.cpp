#include "Widget/Markdown/MarkdownEntities.h"

#include "Widget/Markdown/MarkdownCharacters.h"

namespace KestrelMarkdown
{
namespace
{
struct FEntity
{
	const TCHAR* Name;
	TCHAR Character;
};

const FEntity Entities[] = { { TEXT("amp"), TEXT('&') }, { TEXT("lt"), TEXT('<') }, { TEXT("gt"), TEXT('>') },
	{ TEXT("quot"), TEXT('"') }, { TEXT("apos"), TEXT('\'') }, { TEXT("nbsp"), 0xA0 }, { TEXT("copy"), 0xA9 },
	{ TEXT("reg"), 0xAE }, { TEXT("deg"), 0xB0 }, { TEXT("plusmn"), 0xB1 }, { TEXT("micro"), 0xB5 },
	{ TEXT("middot"), 0xB7 }, { TEXT("times"), 0xD7 }, { TEXT("divide"), 0xF7 }, { TEXT("ndash"), 0x2013 },
	{ TEXT("mdash"), 0x2014 }, { TEXT("lsquo"), 0x2018 }, { TEXT("rsquo"), 0x2019 }, { TEXT("ldquo"), 0x201C },
	{ TEXT("rdquo"), 0x201D }, { TEXT("bull"), 0x2022 }, { TEXT("hellip"), 0x2026 }, { TEXT("larr"), 0x2190 },
	{ TEXT("rarr"), 0x2192 }, { TEXT("ne"), 0x2260 }, { TEXT("le"), 0x2264 }, { TEXT("ge"), 0x2265 } };

constexpr uint32 Replacement = 0xFFFD;

int32 ValueOf(TCHAR Digit, bool bHex)
{
	if (IsDigit(Digit))
	{
		return Digit - TEXT('0');
	}
	const TCHAR Letter = FChar::ToLower(Digit);
	return bHex && Letter >= TEXT('a') && Letter <= TEXT('f') ? Letter - TEXT('a') + 10 : INDEX_NONE;
}

void AppendCodePoint(uint32 CodePoint, FString& OutText)
{
	const bool bSurrogate = CodePoint >= 0xD800 && CodePoint <= 0xDFFF;
	if (CodePoint == 0 || CodePoint > 0x10FFFF || bSurrogate)
	{
		CodePoint = Replacement;
	}
	if (CodePoint > 0xFFFF)
	{
		OutText.AppendChar(static_cast<TCHAR>(0xD7C0 + (CodePoint >> 10)));
		CodePoint = 0xDC00 + (CodePoint & 0x3FF);
	}
	OutText.AppendChar(static_cast<TCHAR>(CodePoint));
}

/** @param Source  begins with "&#" */
int32 ReadNumber(FStringView Source, FString& OutText)
{
	const bool bHex = Source.Len() > 2 && (Source[2] == TEXT('x') || Source[2] == TEXT('X'));
	const int32 Begin = bHex ? 3 : 2;
	const int32 MaxEnd = FMath::Min(Source.Len(), Begin + (bHex ? 6 : 7));
	uint32 CodePoint = 0;
	int32 End = Begin;
	for (; End < MaxEnd && ValueOf(Source[End], bHex) != INDEX_NONE; ++End)
	{
		CodePoint = CodePoint * (bHex ? 16 : 10) + static_cast<uint32>(ValueOf(Source[End], bHex));
	}
	if (End == Begin || End == Source.Len() || Source[End] != TEXT(';'))
	{
		return 0;
	}
	AppendCodePoint(CodePoint, OutText);
	return End + 1;
}
}

int32 ReadEntity(FStringView Source, FString& OutText)
{
	if (Source.Len() > 1 && Source[1] == TEXT('#'))
	{
		return ReadNumber(Source, OutText);
	}
	constexpr int32 MaxNameLength = 6;
	int32 End = 1;
	while (End < Source.Len() && End <= MaxNameLength && Source[End] != TEXT(';'))
	{
		++End;
	}
	if (End == Source.Len() || Source[End] != TEXT(';'))
	{
		return 0;
	}
	const FStringView Name = Source.Mid(1, End - 1);
	for (const FEntity& Entity : Entities)
	{
		if (Name.Equals(Entity.Name, ESearchCase::CaseSensitive))
		{
			OutText.AppendChar(Entity.Character);
			return End + 1;
		}
	}
	return 0;
}

FString Unescape(FStringView Source)
{
	FString Text;
	for (int32 Index = 0; Index < Source.Len();)
	{
		const bool bEscape =
			Source[Index] == TEXT('\\') && Index + 1 < Source.Len() && IsPunctuation(Source[Index + 1]);
		const int32 Length = Source[Index] == TEXT('&') ? ReadEntity(Source.RightChop(Index), Text) : 0;
		if (Length == 0)
		{
			Text.AppendChar(Source[Index + (bEscape ? 1 : 0)]);
		}
		Index += Length > 0 ? Length : (bEscape ? 2 : 1);
	}
	return Text;
}
}
