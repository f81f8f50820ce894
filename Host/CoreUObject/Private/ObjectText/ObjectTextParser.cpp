#include "ObjectText/ObjectTextParser.h"

#include "Misc/Char.h"
#include "Properties/PropertyText.h"

namespace ObjectTextParser
{
FStringView Trim(FStringView Line)
{
	while (Line.Len() > 0 && FChar::IsWhitespace(Line[0]))
	{
		Line = Line.RightChop(1);
	}
	while (Line.Len() > 0 && FChar::IsWhitespace(Line[Line.Len() - 1]))
	{
		Line = Line.LeftChop(1);
	}
	return Line;
}

/** "Key=Value" from the start of the text, where Value is a word or quoted. Null when there is none. */
const TCHAR* ReadPair(const TCHAR* Text, FString& OutKey, FString& OutValue)
{
	Text = PropertyText::ReadToken(PropertyText::SkipBlanks(Text), OutKey);
	if (!Text || *Text != u'=')
	{
		return nullptr;
	}
	if (Text[1] == u'"')
	{
		return PropertyText::ReadQuoted(Text + 1, OutValue);
	}
	const TCHAR* const Start = ++Text;
	while (*Text && *Text != u' ')
	{
		++Text;
	}
	OutValue = FString::ConstructFromPtrSize(Start, static_cast<int32>(Text - Start));
	return Text;
}
}

FObjectTextParser::FObjectTextParser(FStringView Text, int32 FirstLineNumber)
	: LineNumber(FirstLineNumber)
{
	for (int32 Start = 0; Start < Text.Len(); ++LineNumber)
	{
		int32 End = Start;
		while (End < Text.Len() && Text[End] != u'\n')
		{
			++End;
		}
		ReadLine(ObjectTextParser::Trim(Text.Mid(Start, End - Start)));
		Start = End + 1;
	}
	if (!Open.IsEmpty())
	{
		Problems.Add({ LineNumber, TEXT("the text ends inside an object") });
	}
}

void FObjectTextParser::ReadLine(FStringView Line)
{
	static const FStringView BeginObject = TEXT("Begin Object ");
	if (Line.StartsWith(BeginObject, ESearchCase::CaseSensitive))
	{
		Begin(Line.RightChop(BeginObject.Len()));
	}
	else if (Line.Equals(TEXT("End Object"), ESearchCase::CaseSensitive))
	{
		if (Open.IsEmpty())
		{
			Problems.Add({ LineNumber, TEXT("an object ends that has not begun") });
			return;
		}
		Open.Pop(EAllowShrinking::No);
	}
	else if (Line.Len() > 0 && Open.IsEmpty())
	{
		Problems.Add({ LineNumber, TEXT("the line belongs to no object") });
	}
	else if (Line.Len() > 0 && Open.Last() != INDEX_NONE)
	{
		Objects[Open.Last()].Lines.Add({ Line, LineNumber });
	}
}

void FObjectTextParser::Begin(FStringView Rest)
{
	FObjectRecord Record;
	Record.LineNumber = LineNumber;
	Record.Parent = Open.IsEmpty() ? INDEX_NONE : Open.Last();
	const FString Line(Rest);
	const TCHAR* Text = *Line;
	while (Text && *PropertyText::SkipBlanks(Text))
	{
		FString Key;
		FString Value;
		Text = ObjectTextParser::ReadPair(Text, Key, Value);
		FString* const Target = Key == TEXT("Class")   ? &Record.ClassPath
								: Key == TEXT("Name")  ? &Record.Name
								: Key == TEXT("Flags") ? &Record.Flags
													   : nullptr;
		if (Text && Target)
		{
			*Target = Value;
		}
	}
	const bool bInLeftOut = !Open.IsEmpty() && Open.Last() == INDEX_NONE;
	const bool bTooMany = Open.Num() >= MaxDepth || Objects.Num() >= MaxObjects;
	const bool bWrong = !Text || Record.ClassPath.IsEmpty() || Record.Name.IsEmpty();
	if (bInLeftOut || bTooMany || bWrong)
	{
		if (!bInLeftOut)
		{
			Problems.Add({ LineNumber, bTooMany ? TEXT("there are too many objects, or too many in each other")
												: TEXT("an object begins without a class and a name") });
		}
		Open.Add(INDEX_NONE);
		return;
	}
	Open.Add(Objects.Add(MoveTemp(Record)));
}
