#include "Misc/CommandLine.h"

#include "Containers/StringConv.h"
#include "Misc/Parse.h"

namespace CommandLine
{
FString& Stored()
{
	static FString Text;
	return Text;
}

bool NeedsQuotes(const FString& Word)
{
	for (const TCHAR C : Word)
	{
		if (FChar::IsWhitespace(C))
		{
			return true;
		}
	}
	return Word.IsEmpty();
}

/** A backslash at the end stays outside: before the closing quote it would make that quote a part of the word. */
FString Quote(const FString& Word)
{
	int32 Length = Word.Len();
	while (Length > 0 && Word[Length - 1] == u'\\')
	{
		--Length;
	}
	return TEXT("\"") + Word.Left(Length) + TEXT("\"") + Word.RightChop(Length);
}

bool IsWordStart(const TCHAR* Stream, const TCHAR* At)
{
	return At == Stream || FChar::IsWhitespace(At[-1]) || At[-1] == u'"';
}
}

const TCHAR* FCommandLine::Get()
{
	return *CommandLine::Stored();
}

void FCommandLine::Set(const TCHAR* NewCommandLine)
{
	CommandLine::Stored() = NewCommandLine;
}

FString FCommandLine::BuildFromArgV(int32 ArgC, ANSICHAR* ArgV[])
{
	TArray<FString> Words;
	for (int32 Index = 1; Index < ArgC; ++Index)
	{
		const FString Word = FString(ArgV[Index]).Replace(TEXT("\""), TEXT("\\\""));
		FString Switch;
		FString Value;
		const bool bSwitch = Word.StartsWith(TEXT("-")) && Word.Split(TEXT("="), &Switch, &Value);
		if (!CommandLine::NeedsQuotes(Word))
		{
			Words.Add(Word);
		}
		else if (bSwitch && !CommandLine::NeedsQuotes(Switch))
		{
			Words.Add(Switch + TEXT("=") + CommandLine::Quote(Value));
		}
		else
		{
			Words.Add(CommandLine::Quote(Word));
		}
	}
	return FString::Join(Words, TEXT(" "));
}

FString FCommandLine::Token(const TCHAR*& Stream)
{
	while (FChar::IsWhitespace(*Stream))
	{
		++Stream;
	}
	FString Word;
	bool bQuoted = false;
	for (; *Stream && (bQuoted || !FChar::IsWhitespace(*Stream)); ++Stream)
	{
		if (*Stream == u'"')
		{
			bQuoted = !bQuoted;
			continue;
		}
		const bool bQuoteInWord = Stream[0] == u'\\' && Stream[1] == u'"';
		Stream += bQuoteInWord ? 1 : 0;
		Word.AppendChar(*Stream);
	}
	return Word;
}

bool FParse::Value(const TCHAR* Stream, const TCHAR* Match, FString& OutValue)
{
	const int32 MatchLength = FCString::Strlen(Match);
	for (const TCHAR* At = FCString::Stristr(Stream, Match); At; At = FCString::Stristr(At + MatchLength, Match))
	{
		const bool bAfterDash = At > Stream && At[-1] == u'-' && CommandLine::IsWordStart(Stream, At - 1);
		if (!bAfterDash && !CommandLine::IsWordStart(Stream, At))
		{
			continue;
		}
		const TCHAR* ValueStart = At + MatchLength;
		OutValue = FCommandLine::Token(ValueStart);
		return true;
	}
	return false;
}

bool FParse::Value(const TCHAR* Stream, const TCHAR* Match, int32& OutValue)
{
	FString Text;
	if (!Value(Stream, Match, Text))
	{
		return false;
	}
	OutValue = FCString::Atoi(*Text);
	return true;
}

bool FParse::Param(const TCHAR* Stream, const TCHAR* Param)
{
	const FString Wanted = FString(TEXT("-")) + Param;
	for (const TCHAR* At = Stream; *At;)
	{
		if (FCommandLine::Token(At) == Wanted)
		{
			return true;
		}
	}
	return false;
}
