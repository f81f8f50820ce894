#include "Widget/Markdown/MarkdownLinks.h"

#include "Widget/Markdown/MarkdownCharacters.h"
#include "Widget/Markdown/MarkdownEntities.h"

namespace KestrelMarkdown
{
namespace
{
// What is longer is text: so the end of each is looked for in a few characters only.
constexpr int32 MaxAddress = 2048;
constexpr int32 MaxTitle = 1024;
constexpr int32 MaxDepth = 32; // of brackets in an address

bool IsControl(TCHAR Character)
{
	return Character < 0x20 || Character == 0x7F;
}

int32 SkipSpace(FStringView Source, int32 Index)
{
	while (Index < Source.Len() && (IsBlank(Source[Index]) || Source[Index] == TEXT('\n')))
	{
		++Index;
	}
	return Index;
}

bool IsEscape(FStringView Source, int32 Index)
{
	return Source[Index] == TEXT('\\') && Index + 1 < Source.Len() && IsPunctuation(Source[Index + 1]);
}

/** @return where the address ends; INDEX_NONE if it does not */
int32 FindEndInAngles(FStringView Source, int32 Index)
{
	for (++Index; Index < Source.Len() && Source[Index] != TEXT('\n') && Source[Index] != TEXT('<'); ++Index)
	{
		if (Source[Index] == TEXT('>'))
		{
			return Index + 1;
		}
		Index += IsEscape(Source, Index) ? 1 : 0;
	}
	return INDEX_NONE;
}

int32 FindEndOfAddress(FStringView Source, int32 Index)
{
	int32 Depth = 0;
	for (; Index < Source.Len() && Source[Index] != TEXT(' ') && !IsControl(Source[Index]); ++Index)
	{
		if (Source[Index] == TEXT('(') && ++Depth > MaxDepth)
		{
			return INDEX_NONE;
		}
		if (Source[Index] == TEXT(')') && --Depth < 0)
		{
			return Index;
		}
		Index += IsEscape(Source, Index) ? 1 : 0;
	}
	return Depth == 0 ? Index : INDEX_NONE;
}

/** @return where the title ends; Index if there is none, INDEX_NONE if it does not end */
int32 FindEndOfTitle(FStringView Source, int32 Index)
{
	const TCHAR Open = Index < Source.Len() ? Source[Index] : TEXT('\0');
	if (Open != TEXT('"') && Open != TEXT('\'') && Open != TEXT('('))
	{
		return Index;
	}
	const TCHAR Close = Open == TEXT('(') ? TEXT(')') : Open;
	for (++Index; Index < Source.Len(); ++Index)
	{
		if (Source[Index] == Close)
		{
			return Index + 1;
		}
		if (Source[Index] == TEXT('(') && Open == TEXT('('))
		{
			return INDEX_NONE;
		}
		Index += IsEscape(Source, Index) ? 1 : 0;
	}
	return INDEX_NONE;
}
}

int32 ReadLinkTarget(FStringView Source, FString& OutAddress)
{
	Source = Source.Left(MaxAddress + MaxTitle);
	const int32 Begin = SkipSpace(Source, 1);
	const bool bAngles = Begin < Source.Len() && Source[Begin] == TEXT('<');
	const int32 End = bAngles ? FindEndInAngles(Source, Begin) : FindEndOfAddress(Source, Begin);
	if (End == INDEX_NONE || End - Begin > MaxAddress)
	{
		return 0;
	}
	int32 Next = SkipSpace(Source, End);
	if (Next > End)
	{
		const int32 EndOfTitle = FindEndOfTitle(Source, Next);
		if (EndOfTitle == INDEX_NONE)
		{
			return 0;
		}
		Next = SkipSpace(Source, EndOfTitle);
	}
	if (Next >= Source.Len() || Source[Next] != TEXT(')'))
	{
		return 0;
	}
	OutAddress = Unescape(bAngles ? Source.Mid(Begin + 1, End - Begin - 2) : Source.Mid(Begin, End - Begin));
	return Next + 1;
}

int32 ReadAngleAddress(FStringView Source, FString& OutAddress)
{
	constexpr int32 MaxScheme = 32;
	Source = Source.Left(MaxAddress);
	int32 Colon = 1;
	while (Colon < Source.Len() &&
		   (IsLetter(Source[Colon]) || (Colon > 1 && (IsDigit(Source[Colon]) || Source[Colon] == TEXT('+') ||
														 Source[Colon] == TEXT('-') || Source[Colon] == TEXT('.')))))
	{
		++Colon;
	}
	if (Colon < 3 || Colon > MaxScheme + 1 || Colon == Source.Len() || Source[Colon] != TEXT(':'))
	{
		return 0;
	}
	for (int32 Index = Colon; Index < Source.Len(); ++Index)
	{
		if (Source[Index] == TEXT('>'))
		{
			OutAddress = FString(Source.Mid(1, Index - 1));
			return Index + 1;
		}
		if (Source[Index] == TEXT('<') || Source[Index] == TEXT(' ') || IsControl(Source[Index]))
		{
			return 0;
		}
	}
	return 0;
}
}
