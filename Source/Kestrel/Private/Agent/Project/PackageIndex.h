#pragma once

#include "CoreMinimal.h"
#include "Misc/DateTime.h"

class FKestrelSearchWords;

/**
 * Tells which words the packages of assets may have in them, from their bytes.
 *
 * Uncooked packages hold names and texts as rows of characters of one or two bytes, whatever else their format is. What
 * was read is kept, for as long as the editor runs, as a set of the groups of three letters in it: about one byte for
 * eight of the package's. It is valid as long as size and time of the file are the same.
 */
class KESTREL_API FKestrelPackageIndex
{
public:
	static FKestrelPackageIndex& Get();

	/**
	 * @return a bit for each word that may be in what the package shows (FKestrelSearchWords::GetAllBits). All of them
	 *         for a file that is not read or of which nobody can tell
	 */
	uint32 FindWords(FName Package, const FString& File, const FKestrelSearchWords& Words);
	/** What is kept, in bytes. */
	int64 GetKeptBytes() const { return KeptBytes; }
	void Empty();

private:
	struct FEntry
	{
		/** Whether all of them may be in the package. */
		bool HasAll(const TArray<uint32>& Wanted) const;

		FDateTime Time;
		int64 Size = INDEX_NONE;
		uint32 UnknownNodesKey = 0;
		bool bHasUnknownNode = false;
		uint8 Shift = 0;       // of a trigram, to the bit that stands for it
		TArray<uint32> Groups; // a bit for each row of 2^Shift trigrams that are neighbours when mixed
	};

	uint32 FindInEntry(const FEntry& Entry, const FKestrelSearchWords& Words) const;
	uint32 Read(FName Package, const FString& File, const FDateTime& Time, const FKestrelSearchWords& Words);
	void Fold();
	/** @return the words whose other names are there */
	uint32 FindNames(const FKestrelSearchWords& Words, bool& bOutUnknownNode) const;
	void Keep(FName Package, FEntry&& Entry);

	TMap<FName, FEntry> Entries;
	int64 KeptBytes = 0;
	// Room for one package after the other.
	TArray<uint8> Bytes;
	TArray<uint8> Folded; // letters and digits in lower case, and spaces for all others but zeros
	int32 NumFolded = 0;  // of them that are in use
	TArray<uint32> Trigrams;
};
