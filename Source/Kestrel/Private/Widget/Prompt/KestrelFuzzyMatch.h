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
 * A pattern that continues the one before is looked for only where that one could be, and in what was added since. What
 * cannot be among the best, by which of its letters begin something, is not scored.
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
		int32 Begin = 0;
		int32 Length = 0;
	};

	/** What a name has at all, for an upper bound of its scores. A bit for each letter, shared by some. */
	struct FTraits
	{
		uint64 FileLetters = 0; // of the file's name
		uint64 FileWords = 0;   // those of them that begin something
		uint64 FolderWords = 0; // that begin something before it
		uint64 Pairs = 0;       // a bit for each two that follow each other, shared by some
		TCHAR FirstOfFile = 0;
	};

	struct FResult
	{
		int32 Score = 0;
		int32 Index = INDEX_NONE;
	};

	/** @return INDEX_NONE when the name does not match */
	int32 Score(const FPattern& Pattern, const FEntry& Entry) const;
	/** No score of the name is higher. */
	static int32 GetUpperBound(const FPattern& Pattern, const FTraits& Name);
	/** Whether the name may be better than the last of the best. */
	bool MayBeAmong(const TArray<FResult>& Best, const FPattern& Pattern, int32 Index, int32 MaxResults) const;
	bool IsBetter(const FResult& A, const FResult& B) const;
	/** Keeps the best results, the best first. */
	void Insert(TArray<FResult>& Best, const FResult& Result, int32 MaxResults) const;

	TArray<FString> Names;
	TArray<uint64> Masks; // a bit for each letter of a name: the first thing that is asked of it
	TArray<FEntry> Entries;
	TArray<FTraits> Traits;
	TArray<TCHAR> Letters; // of all names, in lower case
	TArray<uint8> Bonuses; // one for each letter

	FString LastPattern;       // in lower case
	TArray<int32> LastMatches; // names before NumSearched that may match it, in order
	int32 NumSearched = 0;
};
