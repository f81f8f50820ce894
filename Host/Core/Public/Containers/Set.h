#pragma once

#include "../../Internal/Containers/SetStorage.h"
#include "Containers/Array.h"
#include "Templates/Tuple.h"

#include <initializer_list>
#include <new>

struct FDefaultSetAllocator
{
};

/** Names an element of a set until the set changes. */
class FSetElementId
{
public:
	FSetElementId() = default;
	bool IsValidId() const { return Index != INDEX_NONE; }
	int32 AsInteger() const { return Index; }
	static FSetElementId FromInteger(int32 Integer)
	{
		FSetElementId Id;
		Id.Index = Integer;
		return Id;
	}

private:
	int32 Index = INDEX_NONE;
};

template <typename ElementType, typename InKeyType, bool bInAllowDuplicateKeys = false>
struct BaseKeyFuncs
{
	using KeyType = InKeyType;
	using KeyInitType = const InKeyType&;
	using ElementInitType = const ElementType&;
	static constexpr bool bAllowDuplicateKeys = bInAllowDuplicateKeys;
};

template <typename ElementType>
struct DefaultKeyFuncs : BaseKeyFuncs<ElementType, ElementType>
{
	static const ElementType& GetSetKey(const ElementType& Element) { return Element; }
	template <typename ComparableKey>
	static bool Matches(const ElementType& A, const ComparableKey& B)
	{
		return A == B;
	}
	template <typename ComparableKey>
	static uint32 GetKeyHash(const ComparableKey& Key)
	{
		return GetTypeHash(Key);
	}
};

/** A hashed set that keeps the order of insertion as long as nothing is removed. */
template <typename InElementType, typename KeyFuncs = DefaultKeyFuncs<InElementType>,
	typename Allocator = FDefaultSetAllocator>
class TSet
{
public:
	using ElementType = InElementType;
	using KeyType = typename KeyFuncs::KeyType;

	TSet() = default;
	TSet(std::initializer_list<ElementType> InitList) { Append(InitList); }
	TSet(const TSet& Other) { Append(Other); }
	TSet(TSet&& Other) { Storage.StealFrom(Other.Storage); }
	explicit TSet(const TArray<ElementType>& Array) { Append(Array); }
	~TSet() { DestroyAll(); }

	TSet& operator=(const TSet& Other)
	{
		if (this != &Other)
		{
			Empty();
			Append(Other);
		}
		return *this;
	}
	TSet& operator=(TSet&& Other)
	{
		if (this != &Other)
		{
			Empty();
			Storage.StealFrom(Other.Storage);
		}
		return *this;
	}

	int32 Num() const { return Storage.Num(); }
	bool IsEmpty() const { return Num() == 0; }
	int32 GetMaxIndex() const { return Storage.GetMaxIndex(); }
	bool IsValidId(FSetElementId Id) const { return Storage.IsValidIndex(Id.AsInteger(), Layout()); }
	void Reserve(int32 Number) { Storage.Reserve(Number, Layout()); }
	void Empty(int32 Slack = 0)
	{
		DestroyAll();
		Storage.Clear();
	}
	void Reset() { Empty(); }

	FSetElementId Add(const ElementType& Element, bool* bIsAlreadyInSet = nullptr)
	{
		return Emplace(bIsAlreadyInSet, Element);
	}
	FSetElementId Add(ElementType&& Element, bool* bIsAlreadyInSet = nullptr)
	{
		return Emplace(bIsAlreadyInSet, MoveTempIfPossible(Element));
	}

	/** Adding a key that is there replaces the element in its place. */
	template <typename ArgType>
	FSetElementId Emplace(bool* bIsAlreadyInSet, ArgType&& Arg)
	{
		if constexpr (std::is_same_v<ArgType, ElementType> && !KeyFuncs::bAllowDuplicateKeys)
		{
			return AddTemporary(bIsAlreadyInSet, Arg);
		}
		else
		{
			ElementType Element(std::forward<ArgType>(Arg));
			return AddTemporary(bIsAlreadyInSet, Element);
		}
	}

	template <typename RangeType>
	void Append(const RangeType& Range)
	{
		for (const ElementType& Element : Range)
		{
			Add(Element);
		}
	}

	FSetElementId FindId(const KeyType& Key) const
	{
		return FSetElementId::FromInteger(FindIndex(KeyFuncs::GetKeyHash(Key), Key));
	}
	ElementType* Find(const KeyType& Key)
	{
		const int32 Index = FindIndex(KeyFuncs::GetKeyHash(Key), Key);
		return Index == INDEX_NONE ? nullptr : &At(Index);
	}
	const ElementType* Find(const KeyType& Key) const { return const_cast<TSet*>(this)->Find(Key); }
	bool Contains(const KeyType& Key) const { return Find(Key) != nullptr; }
	int32 Remove(const KeyType& Key)
	{
		const int32 Index = FindIndex(KeyFuncs::GetKeyHash(Key), Key);
		if (Index == INDEX_NONE)
		{
			return 0;
		}
		RemoveIndex(Index);
		return 1;
	}
	void Remove(FSetElementId Id)
	{
		checkf(IsValidId(Id), TEXT("Remove of an element that the set does not hold"));
		RemoveIndex(Id.AsInteger());
	}

	ElementType& operator[](FSetElementId Id)
	{
		checkf(IsValidId(Id), TEXT("No such element in the set"));
		return At(Id.AsInteger());
	}
	const ElementType& operator[](FSetElementId Id) const { return (*const_cast<TSet*>(this))[Id]; }

	TArray<ElementType> Array() const
	{
		TArray<ElementType> Result;
		Result.Reserve(Num());
		for (const ElementType& Element : *this)
		{
			Result.Add(Element);
		}
		return Result;
	}
	TSet Union(const TSet& Other) const
	{
		TSet Result(*this);
		Result.Append(Other);
		return Result;
	}
	TSet Intersect(const TSet& Other) const
	{
		return Filter([&Other](const ElementType& Element) { return Other.Contains(KeyFuncs::GetSetKey(Element)); });
	}
	TSet Difference(const TSet& Other) const
	{
		return Filter([&Other](const ElementType& Element) { return !Other.Contains(KeyFuncs::GetSetKey(Element)); });
	}
	bool Includes(const TSet& Other) const { return Other.Difference(*this).IsEmpty(); }

	/** Walks the used slots in order. */
	template <bool bConst>
	class TBaseIterator
	{
	public:
		using SetType = std::conditional_t<bConst, const TSet, TSet>;
		using ItElementType = std::conditional_t<bConst, const ElementType, ElementType>;

		TBaseIterator(SetType& InSet, int32 InIndex)
			: Set(&InSet)
			, Index(InIndex)
		{
			SkipFree();
		}

		ItElementType& operator*() const { return Set->At(Index); }
		ItElementType* operator->() const { return &Set->At(Index); }
		explicit operator bool() const { return Index < Set->Storage.GetMaxIndex(); }
		TBaseIterator& operator++()
		{
			++Index;
			SkipFree();
			return *this;
		}
		bool operator!=(const TBaseIterator& Other) const { return Index != Other.Index; }
		bool operator==(const TBaseIterator& Other) const { return Index == Other.Index; }
		FSetElementId GetId() const { return FSetElementId::FromInteger(Index); }
		void RemoveCurrent() requires(!bConst) { Set->RemoveIndex(Index); }

	private:
		void SkipFree()
		{
			while (Index < Set->Storage.GetMaxIndex() && !Set->Storage.IsValidIndex(Index, Layout()))
			{
				++Index;
			}
		}

		SetType* Set;
		int32 Index;
	};

	using TIterator = TBaseIterator<false>;
	using TConstIterator = TBaseIterator<true>;

	TIterator CreateIterator() { return TIterator(*this, 0); }
	TConstIterator CreateConstIterator() const { return TConstIterator(*this, 0); }
	TIterator begin() { return TIterator(*this, 0); }
	TConstIterator begin() const { return TConstIterator(*this, 0); }
	TIterator end() { return TIterator(*this, Storage.GetMaxIndex()); }
	TConstIterator end() const { return TConstIterator(*this, Storage.GetMaxIndex()); }

	template <typename Predicate>
	void Sort(Predicate&& Pred)
	{
		TArray<ElementType> Elements = Array();
		Elements.StableSort(Pred);
		Empty();
		Append(Elements);
	}

private:
	static constexpr FSetSlotLayout Layout() { return FSetSlotLayout::Of(sizeof(ElementType), alignof(ElementType)); }

	ElementType& At(int32 Index) { return *static_cast<ElementType*>(Storage.GetData(Index, Layout())); }
	const ElementType& At(int32 Index) const
	{
		return *static_cast<const ElementType*>(Storage.GetData(Index, Layout()));
	}

	/** Adds an element that may be moved from. */
	FSetElementId AddTemporary(bool* bIsAlreadyInSet, ElementType& Element)
	{
		const uint32 Hash = KeyFuncs::GetKeyHash(KeyFuncs::GetSetKey(Element));
		const int32 Existing =
			KeyFuncs::bAllowDuplicateKeys ? INDEX_NONE : FindIndex(Hash, KeyFuncs::GetSetKey(Element));
		if (bIsAlreadyInSet)
		{
			*bIsAlreadyInSet = Existing != INDEX_NONE;
		}
		if (Existing != INDEX_NONE)
		{
			if (&At(Existing) != &Element)
			{
				At(Existing).~ElementType();
				::new (Storage.GetData(Existing, Layout())) ElementType(MoveTemp(Element));
			}
			return FSetElementId::FromInteger(Existing);
		}
		const int32 Index = Storage.AddSlot(Hash, Layout());
		::new (Storage.GetData(Index, Layout())) ElementType(MoveTemp(Element));
		return FSetElementId::FromInteger(Index);
	}

	int32 FindIndex(uint32 Hash, const KeyType& Key) const
	{
		for (int32 Index = Storage.FirstInChain(Hash); Index != INDEX_NONE; Index = Storage.Link(Index, Layout()).Next)
		{
			if (Storage.Link(Index, Layout()).Hash == Hash && KeyFuncs::Matches(KeyFuncs::GetSetKey(At(Index)), Key))
			{
				return Index;
			}
		}
		return INDEX_NONE;
	}

	void RemoveIndex(int32 Index)
	{
		At(Index).~ElementType();
		Storage.RemoveSlot(Index, Layout());
	}

	void DestroyAll()
	{
		if constexpr (!std::is_trivially_destructible_v<ElementType>)
		{
			for (ElementType& Element : *this)
			{
				Element.~ElementType();
			}
		}
	}

	template <typename Predicate>
	TSet Filter(Predicate&& Pred) const
	{
		TSet Result;
		for (const ElementType& Element : *this)
		{
			if (Pred(Element))
			{
				Result.Add(Element);
			}
		}
		return Result;
	}

	FSetStorage Storage;
};
