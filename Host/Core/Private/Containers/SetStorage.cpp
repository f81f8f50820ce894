#include "Containers/SetStorage.h"

FSetStorage::~FSetStorage()
{
	Clear();
}

int32 FSetStorage::AddSlot(uint32 Hash, const FSetSlotLayout& Layout)
{
	if (Num() + 1 > (Buckets ? NumBuckets : MostInOneChain))
	{
		Rehash(Buckets ? NumBuckets * 2 : MostInOneChain * 2, Layout);
	}
	int32 Index = FirstFree;
	if (Index != INDEX_NONE)
	{
		FirstFree = Link(Index, Layout).Next;
		--NumFree;
	}
	else
	{
		Reserve(NumSlots + 1, Layout);
		Index = NumSlots++;
	}
	int32& Bucket = BucketOf(Hash);
	Link(Index, Layout) = { Bucket, Hash, true };
	Bucket = Index;
	return Index;
}

void FSetStorage::RemoveSlot(int32 Index, const FSetSlotLayout& Layout)
{
	FSetLink& Removed = Link(Index, Layout);
	int32* At = &BucketOf(Removed.Hash);
	while (*At != Index)
	{
		At = &Link(*At, Layout).Next;
	}
	*At = Removed.Next;
	Removed = { FirstFree, 0, false };
	FirstFree = Index;
	++NumFree;
}

void FSetStorage::Reserve(int32 Number, const FSetSlotLayout& Layout)
{
	if (Number <= MaxSlots)
	{
		return;
	}
	const int32 Grown = MaxSlots + MaxSlots / 2 + 4;
	MaxSlots = Number > Grown ? Number : Grown;
	Slots = static_cast<uint8*>(
		UE::Core::Private::Realloc(Slots, static_cast<SIZE_T>(MaxSlots) * Layout.SlotSize, alignof(max_align_t)));
}

void FSetStorage::Clear()
{
	UE::Core::Private::Free(Slots);
	UE::Core::Private::Free(Buckets);
	Slots = nullptr;
	Buckets = nullptr;
	NumSlots = MaxSlots = NumBuckets = NumFree = 0;
	FirstFree = OnlyBucket = INDEX_NONE;
}

void FSetStorage::StealFrom(FSetStorage& Other)
{
	Clear();
	Slots = Other.Slots;
	Buckets = Other.Buckets;
	OnlyBucket = Other.OnlyBucket;
	NumSlots = Other.NumSlots;
	MaxSlots = Other.MaxSlots;
	NumBuckets = Other.NumBuckets;
	FirstFree = Other.FirstFree;
	NumFree = Other.NumFree;
	Other.Slots = nullptr;
	Other.Buckets = nullptr;
	Other.Clear();
}

void FSetStorage::Rehash(int32 NewNumBuckets, const FSetSlotLayout& Layout)
{
	NumBuckets = NewNumBuckets;
	Buckets = static_cast<int32*>(
		UE::Core::Private::Realloc(Buckets, static_cast<SIZE_T>(NumBuckets) * sizeof(int32), alignof(int32)));
	for (int32 Bucket = 0; Bucket < NumBuckets; ++Bucket)
	{
		Buckets[Bucket] = INDEX_NONE;
	}
	for (int32 Index = 0; Index < NumSlots; ++Index)
	{
		FSetLink& Relinked = Link(Index, Layout);
		if (Relinked.bUsed)
		{
			int32& Bucket = Buckets[Relinked.Hash & (NumBuckets - 1)];
			Relinked.Next = Bucket;
			Bucket = Index;
		}
	}
}
