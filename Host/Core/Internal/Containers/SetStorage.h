#pragma once

#include "ContainerAllocation.h"
#include "Misc/AssertionMacros.h"

/** Where the parts of a slot lie. The value stands first. */
struct FSetSlotLayout
{
	int32 LinkOffset; // bytes from the slot's start to its FSetLink
	int32 SlotSize;   // bytes from one slot to the next

	static constexpr FSetSlotLayout Of(int32 ValueSize, int32 ValueAlignment)
	{
		constexpr int32 LinkAlignment = 4;
		constexpr int32 LinkSize = 12;
		const int32 Alignment = ValueAlignment > LinkAlignment ? ValueAlignment : LinkAlignment;
		const int32 LinkOffset = (ValueSize + LinkAlignment - 1) / LinkAlignment * LinkAlignment;
		const int32 SlotSize = (LinkOffset + LinkSize + Alignment - 1) / Alignment * Alignment;
		return { LinkOffset, SlotSize };
	}
};

/** Stands behind each value: its place in the hash chain, or, for a free slot, in the free list. */
struct FSetLink
{
	int32 Next; // next slot of the chain or of the free list, INDEX_NONE at its end
	uint32 Hash;
	int32 bUsed;
};

/**
 * The memory of a TSet or TMap without their types: slots in order of insertion, a list of freed slots that are used
 * again first, and a hash over both.
 *
 * Typed containers derive from it; properties of any element type work on it with a layout of their own.
 */
class FSetStorage
{
public:
	FSetStorage() = default;
	UE_NONCOPYABLE(FSetStorage)
	~FSetStorage();

	int32 Num() const { return NumSlots - NumFree; }
	/** One past the highest slot ever used; walk 0 … GetMaxIndex() - 1 and ask IsValidIndex. */
	int32 GetMaxIndex() const { return NumSlots; }
	bool IsValidIndex(int32 Index, const FSetSlotLayout& Layout) const
	{
		return Index >= 0 && Index < NumSlots && Link(Index, Layout).bUsed;
	}
	void* GetData(int32 Index, const FSetSlotLayout& Layout) const
	{
		return Slots + static_cast<SIZE_T>(Index) * Layout.SlotSize;
	}
	FSetLink& Link(int32 Index, const FSetSlotLayout& Layout) const
	{
		return *reinterpret_cast<FSetLink*>(Slots + static_cast<SIZE_T>(Index) * Layout.SlotSize + Layout.LinkOffset);
	}

	/** First slot of the chain for a hash, INDEX_NONE when there is none. */
	int32 FirstInChain(uint32 Hash) const { return Buckets ? Buckets[Hash & (NumBuckets - 1)] : OnlyBucket; }

	/** Takes a slot (a freed one first) and links it under the hash. The caller constructs the value. */
	int32 AddSlot(uint32 Hash, const FSetSlotLayout& Layout);
	/** Unlinks a slot and puts it on the free list. The caller has destroyed the value. */
	void RemoveSlot(int32 Index, const FSetSlotLayout& Layout);
	/** Makes room for Number values. */
	void Reserve(int32 Number, const FSetSlotLayout& Layout);
	/** Forgets every slot and frees the memory. The caller has destroyed the values. */
	void Clear();
	void StealFrom(FSetStorage& Other);

private:
	/** Up to here one chain holds all: most maps are a handful of pairs, and comparing their hashes is cheap. */
	static constexpr int32 MostInOneChain = 8;

	int32& BucketOf(uint32 Hash) { return Buckets ? Buckets[Hash & (NumBuckets - 1)] : OnlyBucket; }
	void Rehash(int32 NewNumBuckets, const FSetSlotLayout& Layout);

	uint8* Slots = nullptr;
	int32* Buckets = nullptr; // null while OnlyBucket does
	int32 OnlyBucket = INDEX_NONE;
	int32 NumSlots = 0;
	int32 MaxSlots = 0;
	int32 NumBuckets = 0; // a power of two, or 0 with no Buckets
	int32 FirstFree = INDEX_NONE;
	int32 NumFree = 0;
};
