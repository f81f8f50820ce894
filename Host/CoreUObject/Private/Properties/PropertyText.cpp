#include "Properties/PropertyText.h"

#include "Misc/Char.h"

namespace PropertyText
{
namespace
{
bool IsTokenCharacter(TCHAR C)
{
	return FChar::IsAlnum(C) || C > 0x7f || C == u'_' || C == u'-' || C == u'+' || C == u':' || C == u'.';
}

bool EndsPath(TCHAR C)
{
	return C == u'\0' || C == u',' || C == u')' || C == u'\n' || C == u' ';
}
}

FString Quote(const FString& Text)
{
	return TEXT("\"") + Text.ReplaceCharWithEscapedChar() + TEXT("\"");
}

FName FindName(const FString& Text)
{
	return Text.Len() < NAME_SIZE ? FName(*Text, FNAME_Find) : FName();
}

const TCHAR* SkipBlanks(const TCHAR* Buffer)
{
	while (*Buffer == u' ' || *Buffer == u'\t')
	{
		++Buffer;
	}
	return Buffer;
}

const TCHAR* ReadQuoted(const TCHAR* Buffer, FString& OutText)
{
	if (*Buffer != u'"')
	{
		return nullptr;
	}
	const TCHAR* const Start = ++Buffer;
	while (*Buffer && *Buffer != u'"')
	{
		Buffer += Buffer[0] == u'\\' && Buffer[1] ? 2 : 1;
	}
	if (!*Buffer)
	{
		return nullptr;
	}
	OutText = FString::ConstructFromPtrSize(Start, static_cast<int32>(Buffer - Start)).ReplaceEscapedCharWithChar();
	return Buffer + 1;
}

const TCHAR* ReadToken(const TCHAR* Buffer, FString& OutText)
{
	if (*Buffer == u'"')
	{
		return ReadQuoted(Buffer, OutText);
	}
	const TCHAR* const Start = Buffer;
	while (IsTokenCharacter(*Buffer))
	{
		++Buffer;
	}
	OutText = FString::ConstructFromPtrSize(Start, static_cast<int32>(Buffer - Start));
	return Buffer == Start ? nullptr : Buffer;
}

const TCHAR* ReadPath(const TCHAR* Buffer, FString& OutPath)
{
	if (*Buffer == u'"')
	{
		return ReadQuoted(Buffer, OutPath);
	}
	const TCHAR* const Start = Buffer;
	bool bInQuotes = false;
	while (*Buffer && (bInQuotes || !EndsPath(*Buffer)))
	{
		bInQuotes ^= *Buffer == u'\'';
		++Buffer;
	}
	OutPath = FString::ConstructFromPtrSize(Start, static_cast<int32>(Buffer - Start));
	return Buffer == Start || bInQuotes ? nullptr : Buffer;
}

FString StripExportPath(const FString& Text)
{
	int32 Quote = INDEX_NONE;
	if (!Text.FindChar(u'\'', Quote) || !Text.EndsWith(TEXT("'")))
	{
		return Text;
	}
	FString Path = Text.Mid(Quote + 1, Text.Len() - Quote - 2);
	if (Path.StartsWith(TEXT("\"")) && Path.EndsWith(TEXT("\"")))
	{
		Path = Path.Mid(1, Path.Len() - 2);
	}
	return Path;
}

const TCHAR* ReadList(const TCHAR* Buffer, TFunctionRef<const TCHAR*(const TCHAR*)> ReadItem)
{
	Buffer = SkipBlanks(Buffer);
	if (*Buffer != u'(')
	{
		return nullptr;
	}
	Buffer = SkipBlanks(Buffer + 1);
	while (*Buffer != u')')
	{
		Buffer = ReadItem(Buffer);
		if (!Buffer)
		{
			return nullptr;
		}
		Buffer = SkipBlanks(Buffer);
		if (*Buffer == u',')
		{
			Buffer = SkipBlanks(Buffer + 1);
		}
		else if (*Buffer != u')')
		{
			return nullptr;
		}
	}
	return Buffer + 1;
}

const TCHAR* SkipValue(const TCHAR* Buffer)
{
	int32 Depth = 0;
	while (*Buffer && (Depth > 0 || (*Buffer != u',' && *Buffer != u')')))
	{
		if (*Buffer == u'"')
		{
			FString Ignored;
			Buffer = ReadQuoted(Buffer, Ignored);
			if (!Buffer)
			{
				return nullptr;
			}
			continue;
		}
		Depth += (*Buffer == u'(') - (*Buffer == u')');
		++Buffer;
	}
	return Buffer;
}
}
