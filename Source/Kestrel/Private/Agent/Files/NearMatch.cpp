#include "Agent/Files/NearMatch.h"

#include "Agent/Text/DisplayText.h"

#define LOCTEXT_NAMESPACE "KestrelNearMatch"

namespace KestrelNearMatch
{
namespace
{
int32 CountLines(const FString& Text, int32 End)
{
	int32 Line = 1;
	for (int32 Index = 0; Index < End; ++Index)
	{
		Line += Text[Index] == TEXT('\n') ? 1 : 0;
	}
	return Line;
}

/**
 * The first place of one text in another, in time that grows with both (D. E. Knuth, J. H. Morris and V. R. Pratt,
 * "Fast Pattern Matching in Strings", 1977): what repeats itself would take an ordinary search hours.
 */
int32 FindText(const FString& Text, const FString& Wanted)
{
	TArray<int32> Borders; // by length of what has matched, less 1: the longest beginning that is its end as well
	Borders.Reserve(Wanted.Len());
	for (int32 Index = 0, Border = 0; Index < Wanted.Len(); ++Index)
	{
		while (Border > 0 && Wanted[Index] != Wanted[Border])
		{
			Border = Borders[Border - 1];
		}
		Border += Index > 0 && Wanted[Index] == Wanted[Border] ? 1 : 0;
		Borders.Add(Border);
	}
	for (int32 Index = 0, Matched = 0; Index < Text.Len(); ++Index)
	{
		while (Matched > 0 && Text[Index] != Wanted[Matched])
		{
			Matched = Borders[Matched - 1];
		}
		Matched += Text[Index] == Wanted[Matched] ? 1 : 0;
		if (Matched == Wanted.Len())
		{
			return Index + 1 - Matched;
		}
	}
	return INDEX_NONE;
}

/** A text without white space, or without the carriage returns of its lines, and where each character stood. */
struct FReduced
{
	FReduced(const FString& Source, bool bLineEndingsOnly)
	{
		for (int32 Index = 0; Index < Source.Len(); ++Index)
		{
			const TCHAR Character = Source[Index];
			if (bLineEndingsOnly ? Character != TEXT('\r') : !FChar::IsWhitespace(Character))
			{
				Text.AppendChar(Character);
				Places.Add(Index);
			}
		}
	}

	FString Text;
	TArray<int32> Places;
};

/** @return the line where the reduced texts match, from 1; 0 if they do not */
int32 FindReduced(const FString& Text, const FString& Wanted, bool bLineEndingsOnly)
{
	const FReduced ReducedWanted(Wanted, bLineEndingsOnly);
	const FReduced Reduced(Text, bLineEndingsOnly);
	const int32 Place = ReducedWanted.Text.IsEmpty() ? INDEX_NONE : FindText(Reduced.Text, ReducedWanted.Text);
	return Place == INDEX_NONE ? 0 : CountLines(Text, Reduced.Places[Place]);
}

TArray<FString> SplitTrimmed(const FString& Text)
{
	TArray<FString> Lines;
	Text.ParseIntoArrayLines(Lines, false);
	for (FString& Line : Lines)
	{
		Line.TrimStartAndEndInline();
	}
	return Lines;
}

/** Lines of a text that begin like the wanted ones. */
struct FBeginning
{
	int32 FirstLine = 0; // index
	int32 NumLines = 0;
};

FBeginning FindLongestBeginning(const TArray<FString>& Lines, const TArray<FString>& Wanted)
{
	constexpr int32 MaxComparisons = 1000000;
	int32 NumComparisons = 0;
	FBeginning Best;
	for (int32 First = 0; First < Lines.Num() && NumComparisons < MaxComparisons; ++First)
	{
		int32 Count = 0;
		while (Count < Wanted.Num() && First + Count < Lines.Num() &&
			   Lines[First + Count].Equals(Wanted[Count], ESearchCase::CaseSensitive))
		{
			++Count;
		}
		NumComparisons += Count + 1;
		if (Count > Best.NumLines)
		{
			Best = { First, Count };
		}
	}
	return Best;
}

/** The text may have changed since it was read. */
FText DescribeBeginning(const FString& Text, const FString& Wanted)
{
	constexpr int32 MaxShown = 80;
	const TArray<FString> Lines = SplitTrimmed(Text);
	TArray<FString> WantedLines = SplitTrimmed(Wanted);
	while (!WantedLines.IsEmpty() && WantedLines[0].IsEmpty())
	{
		WantedLines.RemoveAt(0);
	}
	const FBeginning Best = FindLongestBeginning(Lines, WantedLines);
	const int32 Next = Best.FirstLine + Best.NumLines;
	if (Best.NumLines == 0 || !Lines.IsValidIndex(Next))
	{
		return FText::GetEmpty();
	}
	return FText::Format(
		LOCTEXT("Beginning", "from line {0} on, {1} {1}|plural(one=line is,other=lines are) as wanted, but line {2} "
							 "reads otherwise: {3}"),
		Best.FirstLine + 1, Best.NumLines, Next + 1,
		FText::FromString(KestrelDisplayText::EscapeLine(Lines[Next].Left(MaxShown))));
}
}

FText Describe(const FString& Text, const FString& Wanted)
{
	if (Text.Len() > MaxLength || Wanted.TrimStartAndEnd().IsEmpty())
	{
		return FText::GetEmpty();
	}
	const int32 OtherCase = FindText(Text.ToLower(), Wanted.ToLower());
	if (OtherCase != INDEX_NONE)
	{
		return FText::Format(LOCTEXT("Case", "line {0} differs in letter case only"), CountLines(Text, OtherCase));
	}
	if (const int32 Line = FindReduced(Text, Wanted, true))
	{
		return FText::Format(LOCTEXT("LineEndings", "line {0} differs in line endings only"), Line);
	}
	if (const int32 Line = FindReduced(Text, Wanted, false))
	{
		return FText::Format(LOCTEXT("WhiteSpace", "line {0} differs in white space only"), Line);
	}
	return DescribeBeginning(Text, Wanted);
}
}

#undef LOCTEXT_NAMESPACE
