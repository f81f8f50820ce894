#pragma once

#include "CoreMinimal.h"

/**
 * Finds paths by some of their letters, while they are being typed.
 *
 * A name matches when it has the letters of the pattern in their order, in any letter case. Its score is the best sum
 * that a choice of its letters reaches:
 *
 *   each letter     what it begins: the file's name 12, the name of a folder 9, a word after another sign than a letter
 *                   or digit 8, an upper case letter after a lower case one, or a digit after a letter 7; otherwise 0
 *   more            3 when it is of the file's name, 6 when it comes right behind the letter that was chosen before
 *
 * Higher scores come first, then shorter names, then by name.
 *
 * Names are prepared when they are added: a lower case copy, what each letter is worth, and a mask of the letters.
 * A pattern that continues the one before is looked for only where that one was found, and in what was added since.
 */
class KESTREL_API FKestrelFuzzyIndex
{
public:
	static constexpr int32 MaxPatternLength = 60;
	/** A longer name is cut in the index. */
	static constexpr int32 MaxNameLength = 1000;

	void Empty();
	void Add(const FString& Name);
	int32 Num() const { return Names.Num(); }
	const FString& GetName(int32 Index) const { return Names[Index]; }

	/**
	 * @param Pattern  an empty one matches every name with a score of 0; one that is too long matches none
	 * @return the numbers of the best names, the best first
	 */
	TArray<int32> Find(const FString& Pattern, int32 MaxResults);

	/** What a letter of a name is worth when it is not behind a chosen one; see above. */
	static TArray<uint8> GetBonuses(const FString& Name);
	static constexpr int32 ConsecutiveBonus = 6;

private:
	struct FPattern;

	/** One for each name; its letters begin at Begin in the pools. */
	struct FEntry
	{
		uint64 Mask = 0;
		int32 Begin = 0;
		int32 Length = 0;
	};

	struct FResult
	{
		int32 Score = 0;
		int32 Index = INDEX_NONE;
	};

	/** @return INDEX_NONE when the name does not match */
	int32 Score(const FPattern& Pattern, const FEntry& Entry) const;
	bool IsBetter(const FResult& A, const FResult& B) const;
	/** Keeps the best results, the best first. */
	void Insert(TArray<FResult>& Best, const FResult& Result, int32 MaxResults) const;

	TArray<FString> Names;
	TArray<FEntry> Entries;
	TArray<TCHAR> Letters; // of all names, in lower case
	TArray<uint8> Bonuses; // one for each letter

	FString LastPattern;       // in lower case
	TArray<int32> LastMatches; // of the names before NumSearched, in order
	int32 NumSearched = 0;
};
