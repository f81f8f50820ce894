#include "CoreMinimal.h"
#include "Support/Dice.h"
#include "Support/KestrelTest.h"
#include "Widget/Prompt/KestrelFuzzyMatch.h"

namespace FuzzyMatchTest
{
struct FOrderCase
{
	const TCHAR* What;
	const TCHAR* Pattern;
	const TCHAR* Expected; // the names below that are found, the best first
};

const TCHAR* const Names[] = { TEXT("Source/Moor/Walker.h"), TEXT("Source/Moor/Walker.cpp"),
	TEXT("Source/Moor/HarrierCharacter.cpp"), TEXT("Source/Moor/MoorHealthComponent.h"),
	TEXT("Config/DefaultEngine.ini"), TEXT("/Game/Doors/BP_Gate"), TEXT("/Game/Doors/BP_Gate2"),
	TEXT("/Game/Gates/T_Wall_D"), TEXT("walk/er/h.txt") };

const FOrderCase OrderCases[] = {
	{ TEXT("the file's name before folders, the shorter before the longer"), TEXT("walk"),
		TEXT("Source/Moor/Walker.h Source/Moor/Walker.cpp walk/er/h.txt") },
	{ TEXT("letter case is ignored"), TEXT("WALKER.H"), TEXT("Source/Moor/Walker.h") },
	{ TEXT("the first letters of words"), TEXT("hc"),
		TEXT("Source/Moor/HarrierCharacter.cpp Source/Moor/MoorHealthComponent.h") },
	{ TEXT("the beginning of a name before the middle of one"), TEXT("gate"),
		TEXT("/Game/Doors/BP_Gate /Game/Doors/BP_Gate2 /Game/Gates/T_Wall_D Config/DefaultEngine.ini") },
	{ TEXT("a number is a word"), TEXT("gate2"), TEXT("/Game/Doors/BP_Gate2") },
	{ TEXT("a path as it is"), TEXT("moor/w"), TEXT("Source/Moor/Walker.h Source/Moor/Walker.cpp") },
	{ TEXT("letters in another order are another name"), TEXT("klaw"), TEXT("") },
};

/** The score by its description: each choice of letters is tried. INDEX_NONE when there is none. */
int32 ScorePlainly(const FString& Pattern, const FString& Name, const TArray<uint8>& Bonuses, int32 From, int32 Begin)
{
	if (Pattern.IsEmpty())
	{
		return 0;
	}
	int32 Best = INDEX_NONE;
	for (int32 At = Begin; At < Name.Len(); ++At)
	{
		if (FChar::ToLower(Name[At]) != FChar::ToLower(Pattern[0]))
		{
			continue;
		}
		const int32 Rest = ScorePlainly(Pattern.Mid(1), Name, Bonuses, At, At + 1);
		if (Rest != INDEX_NONE)
		{
			const int32 Consecutive = From != INDEX_NONE && At == From + 1 ? FKestrelFuzzyIndex::ConsecutiveBonus : 0;
			Best = FMath::Max(Best, Rest + Bonuses[At] + Consecutive);
		}
	}
	return Best;
}

TArray<int32> FindPlainly(const FString& Pattern, const TArray<FString>& All, int32 MaxResults)
{
	TArray<TPair<int32, int32>> Found;
	for (int32 Index = 0; Index < All.Num(); ++Index)
	{
		const int32 Score =
			ScorePlainly(Pattern, All[Index], FKestrelFuzzyIndex::GetBonuses(All[Index]), INDEX_NONE, 0);
		if (Score != INDEX_NONE)
		{
			Found.Add(TPair<int32, int32>(Score, Index));
		}
	}
	Found.Sort([&All](const TPair<int32, int32>& A, const TPair<int32, int32>& B) {
		const FString& NameA = All[A.Value];
		const FString& NameB = All[B.Value];
		const int32 Order = NameA.Compare(NameB, ESearchCase::CaseSensitive);
		return A.Key != B.Key               ? A.Key > B.Key
			   : NameA.Len() != NameB.Len() ? NameA.Len() < NameB.Len()
			   : Order != 0                 ? Order < 0
											: A.Value < B.Value;
	});
	TArray<int32> Best;
	for (int32 Index = 0; Index < FMath::Min(Found.Num(), MaxResults); ++Index)
	{
		Best.Add(Found[Index].Value);
	}
	return Best;
}

/** Few letters, so that they come up often, in all that matters. */
FString MakeName(FKestrelDice& Dice, int32 MaxLength)
{
	const TCHAR Letters[] = { u'a', u'b', u'A', u'B', u'/', u'_', u'.', u'1', u'\u00e9', u'\u0416' };
	FString Name;
	for (int32 Length = 1 + Dice.Roll(MaxLength); Length > 0; --Length)
	{
		Name.AppendChar(Dice.Pick(Letters));
	}
	return Name;
}

FString ToText(const TArray<int32>& Numbers)
{
	FString Text;
	for (const int32 Number : Numbers)
	{
		Text += FString::Printf(TEXT("%d "), Number);
	}
	return Text;
}
}

DEFINE_SPEC(FKestrelFuzzyMatchSpec, "Kestrel.FuzzyMatch", KestrelTest::Flags)
void FKestrelFuzzyMatchSpec::Define()
{
	for (const FuzzyMatchTest::FOrderCase& Case : FuzzyMatchTest::OrderCases)
	{
		It(FString(TEXT("orders what it finds: ")) + Case.What, [this, &Case]() {
			FKestrelFuzzyIndex Index;
			for (const TCHAR* Name : FuzzyMatchTest::Names)
			{
				Index.Add(Name);
			}
			TArray<FString> Found;
			for (const int32 Each : Index.Find(Case.Pattern, 10))
			{
				Found.Add(Index.GetName(Each));
			}
			KestrelTest::TestSameText(*this, Case.Pattern, FString::Join(Found, TEXT(" ")), Case.Expected);
		});
	}

	It("finds what its scoring says, while letters come and go and names are added", [this]() {
		constexpr int32 NumRounds = 60;
		constexpr int32 NumKeys = 12;
		constexpr int32 MaxResults = 7;
		FKestrelDice Dice;
		for (int32 Round = 0; Round < NumRounds; ++Round)
		{
			FKestrelFuzzyIndex Index;
			TArray<FString> All;
			FString Pattern;
			for (int32 Key = 0; Key < NumKeys; ++Key)
			{
				for (int32 Count = Dice.Roll(20); Count > 0; --Count)
				{
					All.Add(FuzzyMatchTest::MakeName(Dice, 14));
					Index.Add(All.Last());
				}
				Pattern = Dice.Roll(4) > 0 ? Pattern + FuzzyMatchTest::MakeName(Dice, 1) : Pattern.LeftChop(1);
				const FString Found = FuzzyMatchTest::ToText(Index.Find(Pattern, MaxResults));
				const FString Expected = FuzzyMatchTest::ToText(FuzzyMatchTest::FindPlainly(Pattern, All, MaxResults));
				if (!Found.Equals(Expected))
				{
					AddError(FString::Printf(
						TEXT("round %d, \"%s\": found %s, expected %s"), Round, *Pattern, *Found, *Expected));
					return;
				}
			}
		}
	});

	It("takes patterns and names of any length", [this]() {
		FKestrelFuzzyIndex Index;
		TestEqual(TEXT("in nothing"), Index.Find(TEXT("a"), 10).Num(), 0);
		Index.Add(FString::ChrN(100000, u'a'));
		Index.Add(TEXT(""));
		TestEqual(
			TEXT("the longest"), Index.Find(FString::ChrN(FKestrelFuzzyIndex::MaxPatternLength, u'a'), 10).Num(), 1);
		TestEqual(
			TEXT("longer"), Index.Find(FString::ChrN(FKestrelFuzzyIndex::MaxPatternLength + 1, u'a'), 10).Num(), 0);
		TestEqual(TEXT("all"), Index.Find(TEXT(""), 10).Num(), 2);
		TestEqual(TEXT("none are wanted"), Index.Find(TEXT("a"), 0).Num(), 0);
	});
}
