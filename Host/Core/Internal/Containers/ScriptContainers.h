#pragma once

#include "ContainerAllocation.h"
#include "SetStorage.h"

/**
 * A TArray whose element type is known at run time only. It constructs and destroys nothing: whoever uses it knows how.
 * Laid out as TArray is.
 */
class FScriptArray
{
public:
	FScriptArray() = default;
	UE_NONCOPYABLE(FScriptArray)
	~FScriptArray() { UE::Core::Private::Free(Data); }

	int32 Num() const { return ArrayNum; }
	void* GetData() const { return Data; }

	/** Makes room for Count elements at Index; their memory is all zero. */
	void InsertZeroed(int32 Index, int32 Count, int32 NumBytesPerElement, int32 Alignment)
	{
		if (ArrayNum + Count > ArrayMax)
		{
			ArrayMax = ArrayNum + Count + (ArrayNum + Count) / 2;
			Data = UE::Core::Private::Realloc(Data, static_cast<SIZE_T>(ArrayMax) * NumBytesPerElement, Alignment);
		}
		uint8* const Place = At(Index, NumBytesPerElement);
		const SIZE_T NumBytes = static_cast<SIZE_T>(Count) * NumBytesPerElement;
		UE::Core::Private::Move(Place + NumBytes, Place, static_cast<SIZE_T>(ArrayNum - Index) * NumBytesPerElement);
		UE::Core::Private::Zero(Place, NumBytes);
		ArrayNum += Count;
	}

	/** Closes the gap that Count elements at Index leave; they have been destroyed. */
	void Remove(int32 Index, int32 Count, int32 NumBytesPerElement)
	{
		UE::Core::Private::Move(At(Index, NumBytesPerElement), At(Index + Count, NumBytesPerElement),
			static_cast<SIZE_T>(ArrayNum - Index - Count) * NumBytesPerElement);
		ArrayNum -= Count;
	}

	uint8* At(int32 Index, int32 NumBytesPerElement) const
	{
		return static_cast<uint8*>(Data) + static_cast<SIZE_T>(Index) * NumBytesPerElement;
	}

private:
	void* Data = nullptr;
	int32 ArrayNum = 0;
	int32 ArrayMax = 0;
};

/** A TSet and a TMap without their types: both are nothing but their storage. */
using FScriptSet = FSetStorage;
using FScriptMap = FSetStorage;

/** Where the parts of a map's slot lie. The key stands first. */
struct FScriptMapLayout
{
	int32 ValueOffset = 0;
	FSetSlotLayout Slot{};

	/** As the compiler lays out TPair. */
	static constexpr FScriptMapLayout Of(int32 KeySize, int32 KeyAlignment, int32 ValueSize, int32 ValueAlignment)
	{
		const int32 Alignment = KeyAlignment > ValueAlignment ? KeyAlignment : ValueAlignment;
		const int32 ValueOffset = (KeySize + ValueAlignment - 1) / ValueAlignment * ValueAlignment;
		const int32 PairSize = (ValueOffset + ValueSize + Alignment - 1) / Alignment * Alignment;
		return { ValueOffset, FSetSlotLayout::Of(PairSize, Alignment) };
	}
};
