#include "Widget/Prompt/KestrelFuzzyMatch.h"

namespace FuzzyMatch
{
// What a letter is worth by what it begins.
constexpr uint8 FileNameBonus = 12;
constexpr uint8 FolderNameBonus = 9;
constexpr uint8 WordBonus = 8;
constexpr uint8 HumpBonus = 7;
/** For each letter of the file's name. */
constexpr uint8 InFileNameBonus = 3;
constexpr TCHAR NumAscii = 128;

/** Unreachable: no sum of bonuses makes it anything else. */
constexpr int32 None = MIN_int32 / 2;

/** A bit for each letter and digit; what is left is shared by the rest. @param Letter  in lower case */
uint64 MaskOf(TCHAR Letter)
{
	constexpr uint32 NumLetters = 26;
	constexpr uint32 NumDigits = 10;
	constexpr uint32 NumOthers = 64 - NumLetters - NumDigits;
	if (Letter >= TEXT('a') && Letter <= TEXT('z'))
	{
		return 1ull << (Letter - TEXT('a'));
	}
	if (FChar::IsDigit(Letter))
	{
		return 1ull << (NumLetters + (Letter - TEXT('0')));
	}
	return 1ull << (NumLetters + NumDigits + static_cast<uint32>(Letter) % NumOthers);
}

/** A bit for two letters that follow each other. */
uint64 PairOf(TCHAR First, TCHAR Second)
{
	constexpr uint32 Spread = 31;
	constexpr uint32 NumBits = 64;
	return 1ull << ((static_cast<uint32>(First) * Spread + static_cast<uint32>(Second)) % NumBits);
}

bool IsHump(TCHAR Before, TCHAR Letter)
{
	return (FChar::IsUpper(Letter) && !FChar::IsUpper(Before)) || (FChar::IsDigit(Letter) && !FChar::IsDigit(Before));
}
}

/** The letters of a pattern, each by where it stands in it. */
struct FKestrelFuzzyIndex::FPattern
{
	explicit FPattern(const FString& InLetters)
		: Letters(InLetters)
	{
		for (int32 Index = 0; Index < Letters.Len(); ++Index)
		{
			const TCHAR Letter = Letters[Index];
			Bits[Index] = FuzzyMatch::MaskOf(Letter);
			Mask |= Bits[Index];
			Pairs[Index] = Index > 0 ? FuzzyMatch::PairOf(Letters[Index - 1], Letter) : 0;
			(Letter < FuzzyMatch::NumAscii ? Places[Letter] : OtherPlaces) |= 1ull << Index;
		}
	}

	/** A bit for each place in the pattern that the letter has. */
	uint64 FindPlaces(TCHAR Letter) const
	{
		if (Letter < FuzzyMatch::NumAscii)
		{
			return Places[Letter];
		}
		uint64 Found = OtherPlaces;
		for (int32 Index = 0; Found != 0 && Index < Letters.Len(); ++Index)
		{
			Found &= Letters[Index] == Letter ? ~0ull : ~(1ull << Index);
		}
		return Found;
	}

	const FString& Letters; // in lower case
	uint64 Mask = 0;
	uint64 Bits[MaxPatternLength] = {};  // of each letter
	uint64 Pairs[MaxPatternLength] = {}; // of each letter and the one before
	uint64 Places[FuzzyMatch::NumAscii] = {};
	uint64 OtherPlaces = 0; // of letters that are not ASCII
};

void FKestrelFuzzyIndex::Empty()
{
	Names.Empty();
	Masks.Empty();
	Entries.Empty();
	Traits.Empty();
	Letters.Empty();
	Bonuses.Empty();
	LastPattern.Empty();
	LastMatches.Empty();
	NumSearched = 0;
}

TArray<uint8> FKestrelFuzzyIndex::GetBonuses(const FString& Name)
{
	int32 LastSlash = INDEX_NONE;
	Name.FindLastChar(TEXT('/'), LastSlash);
	TArray<uint8> Result;
	Result.Reserve(Name.Len());
	for (int32 Index = 0; Index < Name.Len(); ++Index)
	{
		const TCHAR Before = Index > 0 ? Name[Index - 1] : TEXT('/');
		uint8 Bonus = 0;
		if (Index == LastSlash + 1)
		{
			Bonus = FuzzyMatch::FileNameBonus;
		}
		else if (Before == TEXT('/'))
		{
			Bonus = FuzzyMatch::FolderNameBonus;
		}
		else if (!FChar::IsAlnum(Before))
		{
			Bonus = FuzzyMatch::WordBonus;
		}
		else if (FuzzyMatch::IsHump(Before, Name[Index]))
		{
			Bonus = FuzzyMatch::HumpBonus;
		}
		Result.Add(Index > LastSlash ? Bonus + FuzzyMatch::InFileNameBonus : Bonus);
	}
	return Result;
}

void FKestrelFuzzyIndex::Add(const FString& Name)
{
	const FString Indexed = Name.Left(MaxNameLength);
	FEntry& Entry = Entries.AddDefaulted_GetRef();
	FTraits& Trait = Traits.AddDefaulted_GetRef();
	uint64& Mask = Masks.AddDefaulted_GetRef();
	Entry.Begin = Letters.Num();
	Entry.Length = Indexed.Len();
	const TArray<uint8> NameBonuses = GetBonuses(Indexed);
	int32 LastSlash = INDEX_NONE;
	Indexed.FindLastChar(TEXT('/'), LastSlash);
	for (int32 Index = 0; Index < Indexed.Len(); ++Index)
	{
		const TCHAR Letter = FChar::ToLower(Indexed[Index]);
		const uint64 Bit = FuzzyMatch::MaskOf(Letter);
		const bool bBegins = NameBonuses[Index] >= FuzzyMatch::HumpBonus;
		Mask |= Bit;
		if (Index > LastSlash)
		{
			Trait.FileLetters |= Bit;
			Trait.FileWords |= bBegins ? Bit : 0;
		}
		else
		{
			Trait.FolderWords |= bBegins ? Bit : 0;
		}
		Trait.FirstOfFile = Index == LastSlash + 1 ? Letter : Trait.FirstOfFile;
		Trait.Pairs |= Index > 0 ? FuzzyMatch::PairOf(Letters.Last(), Letter) : 0;
		Letters.Add(Letter);
	}
	Bonuses.Append(NameBonuses);
	Names.Add(Name);
}

int32 FKestrelFuzzyIndex::Score(const FPattern& Pattern, const FEntry& Entry) const
{
	const int32 Length = Pattern.Letters.Len();
	const TCHAR* const Name = Letters.GetData() + Entry.Begin;
	const uint8* const Bonus = Bonuses.GetData() + Entry.Begin;
	// By how many letters of the pattern are chosen: the best sum so far, the last sum and where its last letter is.
	int32 Best[MaxPatternLength + 1];
	int32 Last[MaxPatternLength + 1];
	int32 LastAt[MaxPatternLength + 1];
	int32 NumReached = 0;
	uint64 Reachable = 1; // a bit for each place that a letter may take now
	Best[0] = 0;
	Last[0] = FuzzyMatch::None;
	LastAt[0] = INDEX_NONE;
	for (int32 At = 0; At < Entry.Length; ++At)
	{
		const uint64 Places = Pattern.FindPlaces(Name[At]) & Reachable;
		if (Places == 0)
		{
			continue;
		}
		const bool bGrows = NumReached < Length && (Places >> NumReached) != 0;
		if (bGrows)
		{
			Best[NumReached + 1] = FuzzyMatch::None;
			Last[NumReached + 1] = FuzzyMatch::None;
			LastAt[NumReached + 1] = INDEX_NONE;
		}
		// From the end on: a letter of the name is chosen once.
		for (int32 Place = NumReached; Place >= 0; --Place)
		{
			if ((Places >> Place & 1) == 0)
			{
				continue;
			}
			const int32 Behind = LastAt[Place] == At - 1 && At > 0 ? Last[Place] + ConsecutiveBonus : FuzzyMatch::None;
			Last[Place + 1] = FMath::Max(Best[Place], Behind) + Bonus[At];
			LastAt[Place + 1] = At;
			Best[Place + 1] = FMath::Max(Best[Place + 1], Last[Place + 1]);
		}
		if (bGrows)
		{
			++NumReached;
			Reachable = (2ull << NumReached) - 1;
		}
	}
	return NumReached == Length ? Best[Length] : INDEX_NONE;
}

int32 FKestrelFuzzyIndex::GetUpperBound(const FPattern& Pattern, const FTraits& Name)
{
	constexpr int32 FirstOfFile = FuzzyMatch::FileNameBonus + FuzzyMatch::InFileNameBonus;
	constexpr int32 WordOfFile = FuzzyMatch::WordBonus + FuzzyMatch::InFileNameBonus;
	// The first letters are of folders, the others of the file; so far, for the best place to part them.
	int32 OfFolders = 0;
	int32 OfFile = FuzzyMatch::None;
	int32 Pairs = 0;
	for (int32 Index = 0; Index < Pattern.Letters.Len(); ++Index)
	{
		const uint64 Bit = Pattern.Bits[Index];
		const int32 Begun = Pattern.Letters[Index] == Name.FirstOfFile ? FirstOfFile : FuzzyMatch::None;
		const int32 Inside = (Name.FileWords & Bit) != 0     ? WordOfFile
							 : (Name.FileLetters & Bit) != 0 ? FuzzyMatch::InFileNameBonus
															 : FuzzyMatch::None;
		OfFile = FMath::Max(OfFile + Inside, OfFolders + FMath::Max(Begun, Inside));
		OfFolders += (Name.FolderWords & Bit) != 0 ? FuzzyMatch::FolderNameBonus : 0;
		Pairs += (Name.Pairs & Pattern.Pairs[Index]) != 0 ? ConsecutiveBonus : 0;
	}
	return FMath::Max(OfFile, OfFolders) + Pairs;
}

bool FKestrelFuzzyIndex::MayBeAmong(
	const TArray<FResult>& Best, const FPattern& Pattern, int32 Index, int32 MaxResults) const
{
	if (Best.Num() < MaxResults || Best.IsEmpty())
	{
		return MaxResults > 0;
	}
	const FResult& Worst = Best.Last();
	const int32 Bound = GetUpperBound(Pattern, Traits[Index]);
	return Bound > Worst.Score || (Bound == Worst.Score && Entries[Index].Length <= Entries[Worst.Index].Length);
}

bool FKestrelFuzzyIndex::IsBetter(const FResult& A, const FResult& B) const
{
	if (A.Score != B.Score)
	{
		return A.Score > B.Score;
	}
	// Those of the entries: the names themselves lie all over the memory.
	if (Entries[A.Index].Length != Entries[B.Index].Length)
	{
		return Entries[A.Index].Length < Entries[B.Index].Length;
	}
	const int32 Order = Names[A.Index].Compare(Names[B.Index], ESearchCase::CaseSensitive);
	return Order != 0 ? Order < 0 : A.Index < B.Index;
}

void FKestrelFuzzyIndex::Insert(TArray<FResult>& Best, const FResult& Result, int32 MaxResults) const
{
	if (Best.Num() == MaxResults &&
		(MaxResults == 0 || Result.Score < Best.Last().Score || !IsBetter(Result, Best.Last())))
	{
		return;
	}
	int32 Place = Best.Num();
	while (Place > 0 && IsBetter(Result, Best[Place - 1]))
	{
		--Place;
	}
	Best.Insert(Result, Place);
	Best.SetNum(FMath::Min(Best.Num(), MaxResults));
}

TArray<int32> FKestrelFuzzyIndex::Find(const FString& InPattern, int32 MaxResults)
{
	TArray<int32> Found;
	if (InPattern.Len() > MaxPatternLength)
	{
		return Found;
	}
	FString Lower;
	for (const TCHAR Letter : InPattern)
	{
		Lower.AppendChar(FChar::ToLower(Letter));
	}
	const bool bContinues = NumSearched > 0 && Lower.StartsWith(LastPattern, ESearchCase::CaseSensitive);
	const TArray<int32> Candidates = bContinues ? MoveTemp(LastMatches) : TArray<int32>();
	const int32 NumSkipped = bContinues ? NumSearched : 0;
	const FPattern Pattern(Lower);
	TArray<FResult> Best;
	LastMatches.Reset();
	const auto Try = [this, &Pattern, &Best, MaxResults](int32 Index) {
		if ((Masks[Index] & Pattern.Mask) != Pattern.Mask)
		{
			return;
		}
		const bool bIsScored = MayBeAmong(Best, Pattern, Index, MaxResults);
		const int32 Sum = bIsScored ? Score(Pattern, Entries[Index]) : INDEX_NONE;
		if (!bIsScored || Sum != INDEX_NONE)
		{
			LastMatches.Add(Index);
		}
		if (Sum != INDEX_NONE)
		{
			Insert(Best, { Sum, Index }, MaxResults);
		}
	};
	for (const int32 Index : Candidates)
	{
		Try(Index);
	}
	for (int32 Index = NumSkipped; Index < Names.Num(); ++Index)
	{
		Try(Index);
	}
	LastPattern = Lower;
	NumSearched = Names.Num();
	for (const FResult& Result : Best)
	{
		Found.Add(Result.Index);
	}
	return Found;
}
