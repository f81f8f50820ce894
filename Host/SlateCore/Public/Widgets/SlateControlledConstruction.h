#pragma once

#include "CoreMinimal.h"

template <typename WidgetType>
struct TWidgetAllocator;

/** Widgets are made by SNew and SAssignNew alone: a plain `new` or MakeShared would skip Construct. */
class FSlateControlledConstruction
{
public:
	FSlateControlledConstruction() = default;
	virtual ~FSlateControlledConstruction() = default;

	void operator delete(void* Memory) { ::operator delete(Memory); }

private:
	FSlateControlledConstruction(const FSlateControlledConstruction&) = delete;
	FSlateControlledConstruction& operator=(const FSlateControlledConstruction&) = delete;

	void* operator new(const size_t Size) { return ::operator new(Size); }
	void* operator new(const size_t Size, void* Address) { return Address; }

	template <typename WidgetType>
	friend struct TWidgetAllocator;
};
