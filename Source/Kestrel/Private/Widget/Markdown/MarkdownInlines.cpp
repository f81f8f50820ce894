#include "Widget/Markdown/MarkdownInlines.h"

#include "Widget/Markdown/MarkdownCharacters.h"
#include "Widget/Markdown/MarkdownDelimiters.h"
#include "Widget/Markdown/MarkdownEntities.h"
#include "Widget/Markdown/MarkdownLinks.h"

namespace KestrelMarkdown
{
namespace
{
/** A "[" that waits for its "]". */
struct FBracket
{
	int32 Piece = 0;
	int32 FirstDelimiter = 0; // of those inside the brackets
	bool bImage = false;
};

/** Runs of "`" in a text: for each, the next one of the same length. */
class FTicks
{
public:
	explicit FTicks(FStringView Source);
	/** @return where the run begins that ends code; INDEX_NONE if there is none */
	int32 FindEnd(int32 Begin) const
	{
		const int32* End = Ends.Find(Begin);
		return End ? *End : INDEX_NONE;
	}

private:
	TMap<int32, int32> Ends;
};

FTicks::FTicks(FStringView Source)
{
	TMap<int32, int32> Last; // by length
	for (int32 Index = Source.Len() - 1; Index >= 0; --Index)
	{
		if (Source[Index] != TEXT('`'))
		{
			continue;
		}
		int32 Begin = Index;
		while (Begin > 0 && Source[Begin - 1] == TEXT('`'))
		{
			--Begin;
		}
		const int32 Length = Index + 1 - Begin;
		// The run that ends code may be longer if a backslash stands before it, the one that begins it is shorter then.
		if (const int32* Next = Last.Find(Length))
		{
			Ends.Add(Begin, *Next);
		}
		if (const int32* Next = Last.Find(Length - 1); Next && Begin > 0 && Source[Begin - 1] == TEXT('\\'))
		{
			Ends.Add(Begin + 1, *Next);
		}
		Last.Add(Length, Begin);
		Index = Begin;
	}
}

/** Reads from left to right, and decides at each closing marker what it belongs to. */
class FInlineReader
{
public:
	explicit FInlineReader(FStringView InSource)
		: Source(InSource)
		, Ticks(InSource)
	{
	}

	FMarkdownText Read();

private:
	bool ReadSpecial();
	bool ReadBackslash();
	bool ReadLineBreak();
	bool ReadCode();
	bool ReadDelimiters();
	bool ReadAngles();
	bool ReadOpenBracket();
	bool ReadCloseBracket();
	bool ReadEntityHere();
	void AddPlain();

	FStringView Source;
	int32 Position = 0;
	FTicks Ticks;
	FDelimiters Out;
	TArray<FBracket> Brackets;
	int32 NumInactive = 0; // brackets that a link stands in, and a link stands in no link
};

FMarkdownText FInlineReader::Read()
{
	while (Position < Source.Len())
	{
		if (!ReadSpecial())
		{
			AddPlain();
		}
	}
	Out.MatchFrom(0);
	return Out.TakeText();
}

bool FInlineReader::ReadSpecial()
{
	switch (Source[Position])
	{
	case TEXT('\\'):
		return ReadBackslash();
	case TEXT('\n'):
		return ReadLineBreak();
	case TEXT('`'):
		return ReadCode();
	case TEXT('*'):
	case TEXT('_'):
	case TEXT('~'):
		return ReadDelimiters();
	case TEXT('<'):
		return ReadAngles();
	case TEXT('!'):
	case TEXT('['):
		return ReadOpenBracket();
	case TEXT(']'):
		return ReadCloseBracket();
	case TEXT('&'):
		return ReadEntityHere();
	default:
		return false;
	}
}

/** Up to the next character that may mean something. */
void FInlineReader::AddPlain()
{
	const int32 Begin = Position;
	int32 Ignored = INDEX_NONE;
	do
	{
		++Position;
	}
	while (Position < Source.Len() && !FStringView(TEXT("\\\n`*_~<![]&")).FindChar(Source[Position], Ignored));
	Out.AddText(Source.Mid(Begin, Position - Begin));
}

bool FInlineReader::ReadBackslash()
{
	if (Position + 1 >= Source.Len())
	{
		return false;
	}
	if (Source[Position + 1] == TEXT('\n'))
	{
		Out.AddText(TEXT("\n"));
	}
	else if (IsPunctuation(Source[Position + 1]))
	{
		Out.AddText(Source.Mid(Position + 1, 1));
	}
	else
	{
		return false;
	}
	Position += 2;
	return true;
}

/** Two blanks before it make the end of a line a line break. */
bool FInlineReader::ReadLineBreak()
{
	const int32 NumBlanks = Out.TrimBlanks();
	Out.AddText(NumBlanks >= 2 ? TEXT("\n") : TEXT(" "));
	++Position;
	return true;
}

bool FInlineReader::ReadCode()
{
	int32 Length = 1;
	while (Position + Length < Source.Len() && Source[Position + Length] == TEXT('`'))
	{
		++Length;
	}
	const int32 Begin = Position + Length;
	const int32 End = Ticks.FindEnd(Position);
	if (End == INDEX_NONE)
	{
		Out.AddText(Source.Mid(Position, Length));
		Position = Begin;
		return true;
	}
	FString Code = FString(Source.Mid(Begin, End - Begin)).Replace(TEXT("\n"), TEXT(" "));
	const bool bPadded = Code.StartsWith(TEXT(" ")) && Code.EndsWith(TEXT(" "));
	if (bPadded && !Code.TrimStart().IsEmpty())
	{
		Code = Code.Mid(1, Code.Len() - 2);
	}
	Out.AddCode(Code);
	Position = End + Length;
	return true;
}

bool FInlineReader::ReadDelimiters()
{
	const TCHAR Character = Source[Position];
	int32 End = Position;
	while (End < Source.Len() && Source[End] == Character)
	{
		++End;
	}
	const TCHAR Before = Position > 0 ? Source[Position - 1] : TEXT('\n');
	const TCHAR After = End < Source.Len() ? Source[End] : TEXT('\n');
	Out.AddDelimiters(Source.Mid(Position, End - Position), Before, After);
	Position = End;
	return true;
}

bool FInlineReader::ReadAngles()
{
	FString Address;
	const int32 Length = ReadAngleAddress(Source.RightChop(Position), Address);
	if (Length == 0)
	{
		return false;
	}
	const int32 First = Out.AddText(TEXT(""));
	Out.AddText(Address);
	Out.AddLink(First, Address);
	Position += Length;
	return true;
}

bool FInlineReader::ReadOpenBracket()
{
	const bool bImage = Source[Position] == TEXT('!');
	if (bImage && (Position + 1 >= Source.Len() || Source[Position + 1] != TEXT('[')))
	{
		return false;
	}
	const int32 Length = bImage ? 2 : 1;
	const int32 Piece = Out.AddText(Source.Mid(Position, Length));
	Brackets.Add({ Piece, Out.NumDelimiters(), bImage });
	Position += Length;
	return true;
}

bool FInlineReader::ReadCloseBracket()
{
	if (Brackets.IsEmpty())
	{
		return false;
	}
	const FBracket Bracket = Brackets.Pop();
	const bool bActive = Bracket.bImage || Brackets.Num() >= NumInactive;
	NumInactive = FMath::Min(NumInactive, Brackets.Num());
	FString Address;
	const bool bTarget = Position + 1 < Source.Len() && Source[Position + 1] == TEXT('(');
	const int32 Length = bActive && bTarget ? ReadLinkTarget(Source.RightChop(Position + 1), Address) : 0;
	if (Length == 0)
	{
		return false;
	}
	Out.MatchFrom(Bracket.FirstDelimiter);
	Out.AddLink(Bracket.Piece, Address);
	Position += 1 + Length;
	if (!Bracket.bImage)
	{
		NumInactive = Brackets.Num();
	}
	return true;
}

bool FInlineReader::ReadEntityHere()
{
	FString Text;
	const int32 Length = ReadEntity(Source.RightChop(Position), Text);
	if (Length == 0)
	{
		return false;
	}
	Out.AddText(Text);
	Position += Length;
	return true;
}
}

FMarkdownText ReadInlines(FStringView Source)
{
	if (Source.Len() > MaxInlines)
	{
		return { { FString(Source), EMarkdownStyle::None, FString() } };
	}
	return FInlineReader(Source).Read();
}
}
