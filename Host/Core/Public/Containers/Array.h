#pragma once

#include "../../Internal/Containers/ContainerAllocation.h"
#include "Containers/ArrayView.h"
#include "Misc/AssertionMacros.h"
#include "Templates/TypeHash.h"
#include "Templates/UnrealTemplate.h"

#include <algorithm>
#include <initializer_list>
#include <new>

enum class EAllowShrinking : uint8
{
	No,
	Yes,
	Default = Yes
};

/** Range-for over an array: an ensure tells when the array's size changed inside the loop. */
template <typename ArrayType, typename ElementType>
class TCheckedArrayIterator
{
public:
	TCheckedArrayIterator(const ArrayType& InArray, ElementType* InElement)
		: Array(&InArray)
		, Element(InElement)
		, InitialNum(InArray.Num())
	{
	}

	ElementType& operator*() const { return *Element; }

	TCheckedArrayIterator& operator++()
	{
		++Element;
		return *this;
	}

	bool operator!=(const TCheckedArrayIterator& Other) const
	{
		ensureMsgf(Array->Num() == InitialNum, TEXT("Array has changed during ranged-for iteration!"));
		return Element != Other.Element;
	}

private:
	const ArrayType* Array;
	ElementType* Element;
	int32 InitialNum;
};

/**
 * The engine's dynamic array: elements in one block, moved by copying their bytes, indices checked.
 *
 * The layout { data, number, capacity } is relied on by FArrayProperty, which works on arrays of any element type.
 */
template <typename InElementType>
class TArray
{
public:
	using ElementType = InElementType;
	using SizeType = int32;

	TArray() = default;
	TArray(const ElementType* Ptr, int32 Count) { Append(Ptr, Count); }
	TArray(std::initializer_list<ElementType> InitList)
	{
		Append(InitList.begin(), static_cast<int32>(InitList.size()));
	}
	TArray(const TArray& Other) { Append(Other.Data, Other.ArrayNum); }
	TArray(TArray&& Other) noexcept { StealFrom(Other); }
	template <typename OtherElementType>
	requires(!std::is_same_v<OtherElementType, ElementType> &&
			 std::is_constructible_v<ElementType,
				 const OtherElementType&>) explicit TArray(const TArray<OtherElementType>& Other)
	{
		Append(Other);
	}
	explicit TArray(TArrayView<const ElementType> View) { Append(View.GetData(), View.Num()); }
	~TArray()
	{
		Destruct(Data, ArrayNum);
		UE::Core::Private::Free(Data);
	}

	TArray& operator=(const TArray& Other)
	{
		if (this != &Other)
		{
			Reset(Other.ArrayNum);
			Append(Other.Data, Other.ArrayNum);
		}
		return *this;
	}
	TArray& operator=(TArray&& Other) noexcept
	{
		if (this != &Other)
		{
			Destruct(Data, ArrayNum);
			UE::Core::Private::Free(Data);
			StealFrom(Other);
		}
		return *this;
	}
	TArray& operator=(std::initializer_list<ElementType> InitList)
	{
		Reset(static_cast<int32>(InitList.size()));
		Append(InitList.begin(), static_cast<int32>(InitList.size()));
		return *this;
	}

	int32 Num() const { return ArrayNum; }
	int32 Max() const { return ArrayMax; }
	bool IsEmpty() const { return ArrayNum == 0; }
	bool IsValidIndex(int32 Index) const { return Index >= 0 && Index < ArrayNum; }
	ElementType* GetData() { return Data; }
	const ElementType* GetData() const { return Data; }
	static constexpr uint32 GetTypeSize() { return sizeof(ElementType); }
	SIZE_T GetAllocatedSize() const { return static_cast<SIZE_T>(ArrayMax) * sizeof(ElementType); }

	ElementType& operator[](int32 Index)
	{
		RangeCheck(Index);
		return Data[Index];
	}
	const ElementType& operator[](int32 Index) const
	{
		RangeCheck(Index);
		return Data[Index];
	}
	ElementType& Last(int32 IndexFromTheEnd = 0) { return (*this)[ArrayNum - IndexFromTheEnd - 1]; }
	const ElementType& Last(int32 IndexFromTheEnd = 0) const { return (*this)[ArrayNum - IndexFromTheEnd - 1]; }
	ElementType& Top() { return Last(); }
	const ElementType& Top() const { return Last(); }
	void Push(const ElementType& Item) { Add(Item); }
	void Push(ElementType&& Item) { Add(MoveTempIfPossible(Item)); }

	ElementType Pop(EAllowShrinking AllowShrinking = EAllowShrinking::Default)
	{
		RangeCheck(0);
		ElementType Result = MoveTempIfPossible(Data[ArrayNum - 1]);
		RemoveAt(ArrayNum - 1, 1, AllowShrinking);
		return Result;
	}

	int32 Add(const ElementType& Item)
	{
		CheckAddress(&Item);
		return Emplace(Item);
	}
	int32 Add(ElementType&& Item)
	{
		CheckAddress(&Item);
		return Emplace(MoveTempIfPossible(Item));
	}
	template <typename... ArgsType>
	int32 Emplace(ArgsType&&... Args)
	{
		const int32 Index = AddUninitialized();
		::new (static_cast<void*>(Data + Index)) ElementType(static_cast<ArgsType&&>(Args)...);
		return Index;
	}
	template <typename... ArgsType>
	ElementType& Emplace_GetRef(ArgsType&&... Args)
	{
		// Not in one expression: Data is read before the call, which may move the block.
		const int32 Index = Emplace(static_cast<ArgsType&&>(Args)...);
		return Data[Index];
	}
	ElementType& Add_GetRef(const ElementType& Item)
	{
		CheckAddress(&Item);
		return Emplace_GetRef(Item);
	}
	ElementType& Add_GetRef(ElementType&& Item)
	{
		CheckAddress(&Item);
		return Emplace_GetRef(MoveTempIfPossible(Item));
	}
	ElementType& AddDefaulted_GetRef() { return Emplace_GetRef(); }
	int32 AddDefaulted(int32 Count = 1)
	{
		const int32 Index = ArrayNum;
		SetNum(ArrayNum + Count);
		return Index;
	}
	int32 AddUnique(const ElementType& Item)
	{
		const int32 Index = Find(Item);
		return Index != INDEX_NONE ? Index : Add(Item);
	}
	/** Makes room for Count elements at the end and leaves their memory as it is: the caller constructs them. */
	int32 AddUninitialized(int32 Count = 1)
	{
		checkf(Count >= 0, TEXT("AddUninitialized of %d elements"), Count);
		const int32 OldNum = ArrayNum;
		if (ArrayNum + Count > ArrayMax)
		{
			Grow(ArrayNum + Count);
		}
		ArrayNum += Count;
		return OldNum;
	}
	int32 AddZeroed(int32 Count = 1)
	{
		const int32 Index = AddUninitialized(Count);
		UE::Core::Private::Zero(Data + Index, static_cast<SIZE_T>(Count) * sizeof(ElementType));
		return Index;
	}

	void Append(const ElementType* Ptr, int32 Count)
	{
		const int32 At = AddUninitialized(Count);
		if constexpr (std::is_trivially_copyable_v<ElementType>)
		{
			UE::Core::Private::Copy(Data + At, Ptr, static_cast<SIZE_T>(Count) * sizeof(ElementType));
			return;
		}
		for (int32 Index = 0; Index < Count; ++Index)
		{
			::new (static_cast<void*>(Data + At + Index)) ElementType(Ptr[Index]);
		}
	}
	void Append(std::initializer_list<ElementType> InitList)
	{
		Append(InitList.begin(), static_cast<int32>(InitList.size()));
	}
	template <typename OtherElementType>
	void Append(const TArray<OtherElementType>& Source)
	{
		checkf(static_cast<const void*>(this) != static_cast<const void*>(&Source),
			TEXT("An array cannot be appended to itself"));
		Reserve(ArrayNum + Source.Num());
		for (int32 Index = 0; Index < Source.Num(); ++Index)
		{
			Emplace(Source[Index]);
		}
	}
	void Append(TArray&& Source)
	{
		checkf(this != &Source, TEXT("An array cannot be appended to itself"));
		Reserve(ArrayNum + Source.Num());
		for (ElementType& Item : Source)
		{
			Emplace(MoveTempIfPossible(Item));
		}
		Source.Reset();
	}
	template <typename OtherElementType>
	TArray& operator+=(const TArray<OtherElementType>& Other)
	{
		Append(Other);
		return *this;
	}

	int32 Insert(const ElementType& Item, int32 Index)
	{
		CheckAddress(&Item);
		InsertUninitialized(Index, 1);
		::new (static_cast<void*>(Data + Index)) ElementType(Item);
		return Index;
	}
	int32 Insert(ElementType&& Item, int32 Index)
	{
		CheckAddress(&Item);
		InsertUninitialized(Index, 1);
		::new (static_cast<void*>(Data + Index)) ElementType(MoveTempIfPossible(Item));
		return Index;
	}
	int32 Insert(const TArray& Items, int32 Index)
	{
		checkf(this != &Items, TEXT("An array cannot be inserted into itself"));
		InsertUninitialized(Index, Items.Num());
		for (int32 Offset = 0; Offset < Items.Num(); ++Offset)
		{
			::new (static_cast<void*>(Data + Index + Offset)) ElementType(Items[Offset]);
		}
		return Index;
	}
	/** Opens a gap of Count elements at Index; the caller constructs them. */
	void InsertUninitialized(int32 Index, int32 Count)
	{
		checkf(Index >= 0 && Index <= ArrayNum, TEXT("Insert at %d of an array of %d elements"), Index, ArrayNum);
		const int32 OldNum = ArrayNum;
		AddUninitialized(Count);
		UE::Core::Private::Move(
			Data + Index + Count, Data + Index, static_cast<SIZE_T>(OldNum - Index) * sizeof(ElementType));
	}

	void RemoveAt(int32 Index, int32 Count = 1, EAllowShrinking AllowShrinking = EAllowShrinking::Default)
	{
		if (Count == 0)
		{
			return;
		}
		checkf(Count > 0 && Index >= 0 && Index + Count <= ArrayNum,
			TEXT("RemoveAt(%d, %d) of an array of %d elements"), Index, Count, ArrayNum);
		Destruct(Data + Index, Count);
		const int32 NumBehind = ArrayNum - Index - Count;
		UE::Core::Private::Move(
			Data + Index, Data + Index + Count, static_cast<SIZE_T>(NumBehind) * sizeof(ElementType));
		ArrayNum -= Count;
	}
	template <typename ShrinkType>
	requires std::is_same_v<ShrinkType, bool>
	void RemoveAt(int32 Index, int32 Count, ShrinkType bAllowShrinking) = delete;
	void RemoveAtSwap(int32 Index)
	{
		RangeCheck(Index);
		Swap(Data[Index], Data[ArrayNum - 1]);
		RemoveAt(ArrayNum - 1);
	}
	int32 Remove(const ElementType& Item)
	{
		CheckAddress(&Item);
		return RemoveAll([&Item](const ElementType& Element) { return Element == Item; });
	}
	int32 RemoveSingle(const ElementType& Item)
	{
		const int32 Index = Find(Item);
		if (Index == INDEX_NONE)
		{
			return 0;
		}
		RemoveAt(Index);
		return 1;
	}
	template <typename Predicate>
	int32 RemoveAll(Predicate&& Pred)
	{
		int32 Kept = 0;
		const int32 OldNum = ArrayNum;
		for (int32 Index = 0; Index < OldNum; ++Index)
		{
			if (Pred(Data[Index]))
			{
				Destruct(Data + Index, 1);
				continue;
			}
			if (Kept != Index)
			{
				UE::Core::Private::Move(Data + Kept, Data + Index, sizeof(ElementType));
			}
			++Kept;
		}
		ArrayNum = Kept;
		return OldNum - Kept;
	}

	void Empty(int32 Slack = 0)
	{
		Destruct(Data, ArrayNum);
		ArrayNum = 0;
		if (ArrayMax != Slack)
		{
			SetMax(Slack);
		}
	}
	void Reset(int32 NewSize = 0)
	{
		Destruct(Data, ArrayNum);
		ArrayNum = 0;
		Reserve(NewSize);
	}
	void Reserve(int32 Number)
	{
		if (Number > ArrayMax)
		{
			SetMax(Number);
		}
	}
	void Shrink()
	{
		if (ArrayMax != ArrayNum)
		{
			SetMax(ArrayNum);
		}
	}
	void SetNum(int32 NewNum, EAllowShrinking AllowShrinking = EAllowShrinking::Default)
	{
		if (NewNum < ArrayNum)
		{
			RemoveAt(NewNum, ArrayNum - NewNum, AllowShrinking);
			return;
		}
		const int32 At = AddUninitialized(NewNum - ArrayNum);
		for (int32 Index = At; Index < NewNum; ++Index)
		{
			::new (static_cast<void*>(Data + Index)) ElementType();
		}
	}
	void SetNumZeroed(int32 NewNum)
	{
		if (NewNum > ArrayNum)
		{
			AddZeroed(NewNum - ArrayNum);
			return;
		}
		SetNum(NewNum);
	}
	void SetNumUninitialized(int32 NewNum)
	{
		if (NewNum > ArrayNum)
		{
			AddUninitialized(NewNum - ArrayNum);
			return;
		}
		SetNum(NewNum);
	}
	void Init(const ElementType& Item, int32 Number)
	{
		Reset(Number);
		for (int32 Index = 0; Index < Number; ++Index)
		{
			Add(Item);
		}
	}

	int32 Find(const ElementType& Item) const
	{
		for (int32 Index = 0; Index < ArrayNum; ++Index)
		{
			if (Data[Index] == Item)
			{
				return Index;
			}
		}
		return INDEX_NONE;
	}
	bool Find(const ElementType& Item, int32& Index) const
	{
		Index = Find(Item);
		return Index != INDEX_NONE;
	}
	template <typename Predicate>
	int32 IndexOfByPredicate(Predicate&& Pred) const
	{
		for (int32 Index = 0; Index < ArrayNum; ++Index)
		{
			if (Pred(Data[Index]))
			{
				return Index;
			}
		}
		return INDEX_NONE;
	}
	template <typename KeyType>
	int32 IndexOfByKey(const KeyType& Key) const
	{
		return IndexOfByPredicate([&Key](const ElementType& Element) { return Element == Key; });
	}
	template <typename Predicate>
	ElementType* FindByPredicate(Predicate&& Pred)
	{
		const int32 Index = IndexOfByPredicate(Pred);
		return Index == INDEX_NONE ? nullptr : Data + Index;
	}
	template <typename Predicate>
	const ElementType* FindByPredicate(Predicate&& Pred) const
	{
		const int32 Index = IndexOfByPredicate(Pred);
		return Index == INDEX_NONE ? nullptr : Data + Index;
	}
	template <typename KeyType>
	ElementType* FindByKey(const KeyType& Key)
	{
		const int32 Index = IndexOfByKey(Key);
		return Index == INDEX_NONE ? nullptr : Data + Index;
	}
	template <typename KeyType>
	const ElementType* FindByKey(const KeyType& Key) const
	{
		const int32 Index = IndexOfByKey(Key);
		return Index == INDEX_NONE ? nullptr : Data + Index;
	}
	template <typename KeyType>
	bool Contains(const KeyType& Key) const
	{
		return IndexOfByKey(Key) != INDEX_NONE;
	}
	template <typename Predicate>
	bool ContainsByPredicate(Predicate&& Pred) const
	{
		return IndexOfByPredicate(Pred) != INDEX_NONE;
	}
	template <typename Predicate>
	TArray FilterByPredicate(Predicate&& Pred) const
	{
		TArray Result;
		for (const ElementType& Element : *this)
		{
			if (Pred(Element))
			{
				Result.Add(Element);
			}
		}
		return Result;
	}

	void Sort() { StableSort(); }
	/** For an array of raw pointers the predicate receives the pointees, as in the engine. */
	template <typename Predicate>
	void Sort(Predicate&& Pred)
	{
		StableSort(Pred);
	}
	void StableSort()
	{
		StableSort([](const auto& A, const auto& B) { return A < B; });
	}
	template <typename Predicate>
	void StableSort(Predicate&& Pred)
	{
		if constexpr (std::is_pointer_v<ElementType>)
		{
			std::stable_sort(Data, Data + ArrayNum, [&Pred](ElementType A, ElementType B) { return Pred(*A, *B); });
		}
		else
		{
			std::stable_sort(Data, Data + ArrayNum, Pred);
		}
	}

	bool operator==(const TArray& Other) const
	{
		return ArrayNum == Other.ArrayNum && std::equal(Data, Data + ArrayNum, Other.Data);
	}

	TCheckedArrayIterator<TArray, ElementType> begin() { return { *this, Data }; }
	TCheckedArrayIterator<TArray, const ElementType> begin() const { return { *this, Data }; }
	TCheckedArrayIterator<TArray, ElementType> end() { return { *this, Data + ArrayNum }; }
	TCheckedArrayIterator<TArray, const ElementType> end() const { return { *this, Data + ArrayNum }; }

private:
	void RangeCheck(int32 Index) const
	{
		checkf(IsValidIndex(Index), TEXT("Array index out of bounds: index %d of an array of %d elements"), Index,
			ArrayNum);
	}

	void CheckAddress(const ElementType* Address) const
	{
		checkf(Address < Data || Address >= Data + ArrayMax,
			TEXT("Attempting to use a container element which already comes from the container being modified"));
	}

	void Grow(int32 Needed) { SetMax(std::max(Needed, ArrayNum + ArrayNum / 2 + 4)); }

	void SetMax(int32 NewMax)
	{
		Data = static_cast<ElementType*>(
			UE::Core::Private::Realloc(Data, static_cast<SIZE_T>(NewMax) * sizeof(ElementType), alignof(ElementType)));
		ArrayMax = NewMax;
	}

	static void Destruct(ElementType* First, int32 Count)
	{
		if constexpr (!std::is_trivially_destructible_v<ElementType>)
		{
			for (int32 Index = 0; Index < Count; ++Index)
			{
				First[Index].~ElementType();
			}
		}
	}

	void StealFrom(TArray& Other)
	{
		Data = Other.Data;
		ArrayNum = Other.ArrayNum;
		ArrayMax = Other.ArrayMax;
		Other.Data = nullptr;
		Other.ArrayNum = 0;
		Other.ArrayMax = 0;
	}

	ElementType* Data = nullptr;
	int32 ArrayNum = 0;
	int32 ArrayMax = 0;
};

template <typename T>
uint32 GetTypeHash(const TArray<T>& Array)
{
	uint32 Hash = 0;
	for (const T& Element : Array)
	{
		Hash = HashCombine(Hash, GetTypeHash(Element));
	}
	return Hash;
}

template <typename ElementType>
TArrayView<ElementType> MakeArrayView(TArray<ElementType>& Array)
{
	return TArrayView<ElementType>(Array.GetData(), Array.Num());
}

template <typename ElementType>
TArrayView<const ElementType> MakeArrayView(const TArray<ElementType>& Array)
{
	return TArrayView<const ElementType>(Array.GetData(), Array.Num());
}
