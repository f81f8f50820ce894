#pragma once

#include "HAL/Platform.h"
#include "Misc/AssertionMacros.h"

#include <initializer_list>
#include <type_traits>

template <typename ElementType>
class TArray;

/** A stretch of somebody else's elements. It must not outlive them. */
template <typename InElementType>
class TArrayView
{
public:
	using ElementType = InElementType;

	TArrayView() = default;
	TArrayView(ElementType* InData, int32 InNum)
		: Data(InData)
		, ArrayNum(InNum)
	{
	}
	template <int32 Count>
	TArrayView(ElementType (&Array)[Count])
		: Data(Array)
		, ArrayNum(Count)
	{
	}
	TArrayView(TArray<std::remove_const_t<ElementType>>& Array)
		: Data(Array.GetData())
		, ArrayNum(Array.Num())
	{
	}
	TArrayView(const TArray<std::remove_const_t<ElementType>>& Array) requires std::is_const_v<ElementType>
		: Data(Array.GetData()), ArrayNum(Array.Num())
	{
	}
	TArrayView(std::initializer_list<std::remove_const_t<ElementType>> InitList) requires std::is_const_v<ElementType>
		: Data(InitList.begin()), ArrayNum(static_cast<int32>(InitList.size()))
	{
	}
	TArrayView(TArrayView<std::remove_const_t<ElementType>> Other) requires std::is_const_v<ElementType>
		: Data(Other.GetData()), ArrayNum(Other.Num())
	{
	}

	int32 Num() const { return ArrayNum; }
	bool IsEmpty() const { return ArrayNum == 0; }
	ElementType* GetData() const { return Data; }
	bool IsValidIndex(int32 Index) const { return Index >= 0 && Index < ArrayNum; }
	ElementType& operator[](int32 Index) const
	{
		checkf(IsValidIndex(Index), TEXT("View index out of bounds: index %d of %d elements"), Index, ArrayNum);
		return Data[Index];
	}
	TArrayView Slice(int32 Index, int32 Count) const
	{
		checkf(Index >= 0 && Count >= 0 && Index + Count <= ArrayNum, TEXT("Slice(%d, %d) of %d elements"), Index,
			Count, ArrayNum);
		return TArrayView(Data + Index, Count);
	}
	ElementType* begin() const { return Data; }
	ElementType* end() const { return Data + ArrayNum; }

private:
	ElementType* Data = nullptr;
	int32 ArrayNum = 0;
};

template <typename ElementType>
using TConstArrayView = TArrayView<const ElementType>;
