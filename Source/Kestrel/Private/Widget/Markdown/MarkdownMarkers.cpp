#include "Widget/Markdown/MarkdownMarkers.h"

#include "Widget/Markdown/MarkdownEntities.h"

namespace KestrelMarkdown
{
namespace
{
int32 CountOf(FStringView Text, TCHAR Character)
{
	int32 Count = 0;
	while (Count < Text.Len() && Text[Count] == Character)
	{
		++Count;
	}
	return Count;
}

bool IsAllBlank(FStringView Text)
{
	for (const TCHAR Character : Text)
	{
		if (!IsBlank(Character))
		{
			return false;
		}
	}
	return true;
}

FStringView TrimBlanks(FStringView Text)
{
	int32 Begin = 0;
	int32 End = Text.Len();
	for (; Begin < End && IsBlank(Text[Begin]); ++Begin)
	{
	}
	for (; End > Begin && IsBlank(Text[End - 1]); --End)
	{
	}
	return Text.Mid(Begin, End - Begin);
}

FString FirstWordOf(FStringView Text)
{
	int32 Length = 0;
	while (Length < Text.Len() && !IsBlank(Text[Length]))
	{
		++Length;
	}
	return FString(Text.Left(Length));
}
}

TOptional<FFence> ReadFence(const FLine& Line)
{
	const FStringView Rest = Line.GetRest();
	FFence Fence;
	Fence.Character = Line.Peek();
	Fence.Length = CountOf(Rest, Fence.Character);
	Fence.Indent = Line.GetIndent();
	const bool bTicks = Fence.Character == TEXT('`');
	if (Fence.Length < 3 || (!bTicks && Fence.Character != TEXT('~')))
	{
		return {};
	}
	const FStringView Info = TrimBlanks(Rest.RightChop(Fence.Length));
	int32 Tick = INDEX_NONE;
	if (bTicks && Info.FindChar(TEXT('`'), Tick))
	{
		return {}; // code within a line
	}
	Fence.Language = FirstWordOf(Unescape(Info));
	return Fence;
}

bool EndsFence(const FLine& Line, const FFence& Fence)
{
	const FStringView Rest = Line.GetRest();
	const int32 Length = CountOf(Rest, Fence.Character);
	return !Line.IsIndented() && Length >= Fence.Length && IsAllBlank(Rest.RightChop(Length));
}

int32 ReadHeading(const FLine& Line, FStringView& OutText)
{
	const FStringView Rest = Line.GetRest();
	const int32 Level = CountOf(Rest, TEXT('#'));
	if (Level < 1 || Level > 6 || (Rest.Len() > Level && !IsBlank(Rest[Level])))
	{
		return 0;
	}
	OutText = TrimBlanks(Rest.RightChop(Level));
	int32 Length = OutText.Len();
	while (Length > 0 && OutText[Length - 1] == TEXT('#'))
	{
		--Length;
	}
	if (Length == 0 || (Length < OutText.Len() && IsBlank(OutText[Length - 1])))
	{
		OutText = TrimBlanks(OutText.Left(Length));
	}
	return Level;
}

int32 ReadUnderline(const FLine& Line)
{
	const FStringView Rest = Line.GetRest();
	const TCHAR Character = Line.Peek();
	if ((Character != TEXT('=') && Character != TEXT('-')) || !IsAllBlank(Rest.RightChop(CountOf(Rest, Character))))
	{
		return 0;
	}
	return Character == TEXT('=') ? 1 : 2;
}

bool IsRule(const FLine& Line)
{
	const TCHAR Mark = Line.Peek();
	if (Mark != TEXT('-') && Mark != TEXT('*') && Mark != TEXT('_'))
	{
		return false;
	}
	int32 Count = 0;
	for (const TCHAR Character : Line.GetRest())
	{
		if (Character != Mark && !IsBlank(Character))
		{
			return false;
		}
		Count += Character == Mark ? 1 : 0;
	}
	return Count >= 3;
}

TOptional<FListMarker> ReadListMarker(const FLine& Line)
{
	constexpr int32 MaxDigits = 9;
	FListMarker Marker;
	while (Marker.Length < MaxDigits && IsDigit(Line.Peek(Marker.Length)))
	{
		Marker.Number = Marker.Number * 10 + (Line.Peek(Marker.Length) - TEXT('0'));
		++Marker.Length;
	}
	Marker.bOrdered = Marker.Length > 0;
	Marker.Delimiter = Line.Peek(Marker.Length);
	++Marker.Length;
	const TCHAR* Delimiters = Marker.bOrdered ? TEXT(".)") : TEXT("-*+");
	const bool bDelimited = Marker.Delimiter == Delimiters[0] || Marker.Delimiter == Delimiters[1] ||
							(!Marker.bOrdered && Marker.Delimiter == Delimiters[2]);
	const FStringView Rest = Line.GetRest();
	const bool bEnds = Rest.Len() <= Marker.Length || IsBlank(Rest[Marker.Length]);
	return bDelimited && bEnds ? Marker : TOptional<FListMarker>();
}

TArray<EMarkdownAlignment> ReadColumns(const FLine& Line)
{
	TArray<EMarkdownAlignment> Columns;
	FStringView Rest = TrimBlanks(Line.GetRest());
	int32 Pipe = INDEX_NONE;
	if (!Rest.FindChar(TEXT('|'), Pipe))
	{
		return {};
	}
	for (const FString& Cell : SplitCells(Rest, MaxColumns + 1))
	{
		const bool bLeft = Cell.StartsWith(TEXT(":"), ESearchCase::CaseSensitive);
		const bool bRight = Cell.Len() > 1 && Cell.EndsWith(TEXT(":"), ESearchCase::CaseSensitive);
		const FStringView Dashes =
			FStringView(Cell).Mid(bLeft ? 1 : 0, Cell.Len() - (bLeft ? 1 : 0) - (bRight ? 1 : 0));
		if (Dashes.IsEmpty() || CountOf(Dashes, TEXT('-')) != Dashes.Len())
		{
			return {};
		}
		Columns.Add(
			bRight ? (bLeft ? EMarkdownAlignment::Center : EMarkdownAlignment::Right) : EMarkdownAlignment::Left);
	}
	return Columns.Num() <= MaxColumns ? Columns : TArray<EMarkdownAlignment>();
}

TArray<FString> SplitCells(FStringView Row, int32 MaxCells)
{
	TArray<FString> Cells;
	Row = TrimBlanks(Row);
	int32 Begin = Row.Len() > 0 && Row[0] == TEXT('|') ? 1 : 0;
	while (Begin < Row.Len() && Cells.Num() < MaxCells)
	{
		int32 End = Begin;
		for (; End < Row.Len() && Row[End] != TEXT('|'); ++End)
		{
			End += Row[End] == TEXT('\\') && End + 1 < Row.Len() ? 1 : 0;
		}
		// A bar that is escaped for the table is an ordinary one in the cell, in code as well.
		Cells.Add(FString(TrimBlanks(Row.Mid(Begin, End - Begin))).Replace(TEXT("\\|"), TEXT("|")));
		Begin = End + 1;
	}
	return Cells;
}
}
