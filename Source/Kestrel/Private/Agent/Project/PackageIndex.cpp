#include "Agent/Project/PackageIndex.h"

#include "Agent/Files/NativeFile.h"
#include "Agent/Project/SearchWords.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "HAL/UnrealMemory.h"
#include "Misc/Timespan.h"
#include "Templates/UniquePtr.h"

namespace PackageIndex
{
constexpr int64 MaxFileBytes = 64 * 1024 * 1024; // what is larger is loaded, as if it had been found
constexpr int64 MaxKeptBytes = 64 * 1024 * 1024;
constexpr double SettlingSeconds = 3.0; // the times of some file systems have whole seconds, or two
constexpr int32 NumTrigrams = 1 << KestrelPackageNames::TrigramBits;
constexpr int32 BitsPerGroup = 32;
constexpr int32 BitsPerTrigram = 8; // so that one in eight of those that are not there seems to be

/** By byte: what stands for it in the folded text; 0 is left out. */
struct FFoldTable
{
	constexpr FFoldTable()
	{
		for (int32 Byte = 0; Byte < 256; ++Byte)
		{
			const uint8 Letter = KestrelPackageNames::FoldLetter(static_cast<uint8>(Byte));
			Letters[Byte] = Letter ? Letter : ' ';
			NameBytes[Byte] = Byte == '_' ? static_cast<uint8>('_') : Letter;
		}
	}

	uint8 Letters[256] = {};
	uint8 NameBytes[256] = {}; // 0 between names
};

constexpr FFoldTable FoldTable;

/** Rejects nearly all hashes that are in none of the sets that were added, in a tenth of the time. */
class FHashFilter
{
public:
	void Add(const TSet<uint32>& Hashes)
	{
		for (const uint32 Hash : Hashes)
		{
			Bits[GetIndex(Hash)] |= GetBit(Hash);
		}
	}
	bool MayContain(uint32 Hash) const { return (Bits[GetIndex(Hash)] & GetBit(Hash)) != 0; }

private:
	static constexpr uint32 NumGroups = 1024;
	static uint32 GetIndex(uint32 Hash) { return (Hash >> 5) % NumGroups; }
	static uint32 GetBit(uint32 Hash) { return 1u << (Hash & 31u); }

	uint32 Bits[NumGroups] = {};
};

/** In fewer system calls than with the engine's helpers: there may be ten thousands of files. */
bool ReadFile(const FString& File, TArray<uint8>& OutBytes)
{
	// A pipe would never end, and a file that is gone is for the engine to complain about.
	if (!KestrelNativeFile::IsRegularFile(File))
	{
		return false;
	}
	const TUniquePtr<IFileHandle> Handle(FPlatformFileManager::Get().GetPlatformFile().OpenRead(*File));
	const int64 Size = Handle ? Handle->Size() : INDEX_NONE;
	if (Size < 0 || Size > MaxFileBytes)
	{
		return false;
	}
	OutBytes.SetNumUninitialized(static_cast<int32>(Size));
	return Handle->Read(OutBytes.GetData(), Size);
}

void CollectTrigrams(TArrayView<const uint8> Folded, TArray<uint32>& OutBits)
{
	constexpr int32 TrigramLength = 3;
	OutBits.SetNumUninitialized(NumTrigrams / BitsPerGroup);
	for (uint32& Group : OutBits)
	{
		Group = 0;
	}
	// Plain pointers: the checks of the arrays would take longer than the work.
	uint32* const Bits = OutBits.GetData();
	const uint8* const End = Folded.GetData() + Folded.Num();
	uint32 Letters = 0;
	int32 Length = 0;
	for (const uint8* Each = Folded.GetData(); Each != End; ++Each)
	{
		if (*Each == ' ')
		{
			Length = 0;
			continue;
		}
		Letters = KestrelPackageNames::AddToTrigram(Letters, *Each);
		if (++Length >= TrigramLength)
		{
			const uint32 Mixed = KestrelPackageNames::MixTrigram(Letters);
			Bits[Mixed / BitsPerGroup] |= 1u << (Mixed % BitsPerGroup);
		}
	}
}

/** As many neighbours become one bit as the number of those that are set allows. */
TArray<uint32> Shrink(const TArray<uint32>& Bits, uint8& OutShift)
{
	int32 NumSet = 0;
	for (const uint32 Group : Bits)
	{
		NumSet += FMath::CountBits(Group);
	}
	OutShift = 0;
	while (NumTrigrams >> (OutShift + 1) >= FMath::Max(NumSet * BitsPerTrigram, BitsPerGroup))
	{
		++OutShift;
	}
	TArray<uint32> Small;
	Small.Init(0u, (NumTrigrams >> OutShift) / BitsPerGroup);
	for (int32 Index = 0; Index < Bits.Num(); ++Index)
	{
		for (uint32 Rest = Bits[Index]; Rest != 0; Rest &= Rest - 1)
		{
			const uint32 Bit = (Index * BitsPerGroup + FMath::CountTrailingZeros(Rest)) >> OutShift;
			Small[Bit / BitsPerGroup] |= 1u << (Bit % BitsPerGroup);
		}
	}
	return Small;
}
}

FKestrelPackageIndex& FKestrelPackageIndex::Get()
{
	static FKestrelPackageIndex Index;
	return Index;
}

void FKestrelPackageIndex::Empty()
{
	Entries.Empty();
	KeptBytes = 0;
}

uint32 FKestrelPackageIndex::FindWords(FName Package, const FString& File, const FKestrelSearchWords& Words)
{
	const FDateTime Time = IFileManager::Get().GetTimeStamp(*File);
	const FEntry* Known = Entries.Find(Package);
	const bool bValid = Known && Known->Time == Time && Known->UnknownNodesKey == Words.GetUnknownNodesKey() &&
						Known->Size == IFileManager::Get().FileSize(*File);
	const uint32 MayBeThere = bValid ? FindInEntry(*Known, Words) : Words.GetAllBits();
	const bool bCertain = bValid && (MayBeThere == 0 || Known->bHasUnknownNode);
	return bCertain ? MayBeThere : Read(Package, File, Time, Words);
}

bool FKestrelPackageIndex::FEntry::HasAll(const TArray<uint32>& Wanted) const
{
	for (const uint32 Mixed : Wanted)
	{
		const uint32 Bit = Mixed >> Shift;
		if ((Groups[Bit / PackageIndex::BitsPerGroup] & (1u << (Bit % PackageIndex::BitsPerGroup))) == 0)
		{
			return false;
		}
	}
	return true;
}

uint32 FKestrelPackageIndex::FindInEntry(const FEntry& Entry, const FKestrelSearchWords& Words) const
{
	if (Entry.bHasUnknownNode)
	{
		return Words.GetAllBits();
	}
	uint32 Bits = 0;
	for (int32 Index = 0; Index < Words.GetWords().Num(); ++Index)
	{
		const FKestrelSearchWord& Word = Words.GetWords()[Index];
		const auto IsThere = [&Entry](const TArray<uint32>& Wanted) { return Entry.HasAll(Wanted); };
		const bool bMayBeThere =
			Word.bIsAnywhere || IsThere(Word.Trigrams) || Word.NameParts.ContainsByPredicate(IsThere);
		Bits |= bMayBeThere ? 1u << Index : 0u;
	}
	return Bits;
}

uint32 FKestrelPackageIndex::Read(
	FName Package, const FString& File, const FDateTime& Time, const FKestrelSearchWords& Words)
{
	if (!PackageIndex::ReadFile(File, Bytes))
	{
		return Words.GetAllBits();
	}
	Fold();
	FEntry Entry;
	Entry.Time = Time;
	Entry.Size = Bytes.Num();
	Entry.UnknownNodesKey = Words.GetUnknownNodesKey();
	uint32 Bits = FindNames(Words, Entry.bHasUnknownNode);
	const TConstArrayView<uint8> Shown(Folded.GetData(), NumFolded);
	for (int32 Index = 0; Index < Words.GetWords().Num(); ++Index)
	{
		const FKestrelSearchWord& Word = Words.GetWords()[Index];
		const uint32 Bit = 1u << Index;
		Bits |=
			Entry.bHasUnknownNode || Word.bIsAnywhere || (!(Bits & Bit) && Word.Needle.OccursInBytes(Shown)) ? Bit : 0u;
	}
	Keep(Package, MoveTemp(Entry));
	return Bits;
}

void FKestrelPackageIndex::Fold()
{
	if (Folded.Num() < Bytes.Num())
	{
		Folded.SetNumUninitialized(Bytes.Num());
	}
	uint8* Out = Folded.GetData();
	const uint8* const End = Bytes.GetData() + Bytes.Num();
	for (const uint8* Each = Bytes.GetData(); Each != End; ++Each)
	{
		// Every other byte of a text in UTF-16 is zero, and such texts are found in the same way.
		*Out = PackageIndex::FoldTable.Letters[*Each];
		Out += *Each != 0;
	}
	NumFolded = static_cast<int32>(Out - Folded.GetData());
}

uint32 FKestrelPackageIndex::FindNames(const FKestrelSearchWords& Words, bool& bOutUnknownNode) const
{
	PackageIndex::FHashFilter Filter;
	Filter.Add(Words.GetUnknownNodes());
	for (const FKestrelSearchWord& Word : Words.GetWords())
	{
		Filter.Add(Word.NameHashes);
	}
	uint32 Bits = 0;
	const auto Check = [&Filter, &Words, &Bits, &bOutUnknownNode](uint32 Hash) {
		if (!Filter.MayContain(Hash))
		{
			return;
		}
		bOutUnknownNode |= Words.GetUnknownNodes().Contains(Hash);
		for (int32 Index = 0; Index < Words.GetWords().Num(); ++Index)
		{
			Bits |= Words.GetWords()[Index].NameHashes.Contains(Hash) ? 1u << Index : 0u;
		}
	};
	uint32 Hash = KestrelPackageNames::HashStart;
	const uint8* const End = Bytes.GetData() + Bytes.Num();
	for (const uint8* Each = Bytes.GetData(); Each != End; ++Each)
	{
		if (const uint8 Letter = PackageIndex::FoldTable.NameBytes[*Each])
		{
			Hash = KestrelPackageNames::AddToHash(Hash, Letter);
		}
		else if (Hash != KestrelPackageNames::HashStart)
		{
			Check(Hash);
			Hash = KestrelPackageNames::HashStart;
		}
	}
	Check(Hash);
	return Bits;
}

void FKestrelPackageIndex::Keep(FName Package, FEntry&& Entry)
{
	if (const FEntry* Old = Entries.Find(Package))
	{
		KeptBytes -= Old->Groups.Num() * static_cast<int64>(sizeof(uint32));
		Entries.Remove(Package);
	}
	// A file that has just been written may be written again without its time telling.
	const bool bSettled = Entry.Time + FTimespan::FromSeconds(PackageIndex::SettlingSeconds) < FDateTime::UtcNow();
	if (!bSettled || KeptBytes >= PackageIndex::MaxKeptBytes)
	{
		return;
	}
	PackageIndex::CollectTrigrams(TArrayView<const uint8>(Folded.GetData(), NumFolded), Trigrams);
	Entry.Groups = PackageIndex::Shrink(Trigrams, Entry.Shift);
	KeptBytes += Entry.Groups.Num() * static_cast<int64>(sizeof(uint32));
	Entries.Add(Package, MoveTemp(Entry));
}
