#pragma once

#include "UObject/Class.h"
#include "UObject/UObjectHash.h"

/** Walks all objects of a class and its children; default objects are left out. */
template <typename T>
class TObjectIterator
{
public:
	explicit TObjectIterator(EObjectFlags ExclusionFlags = RF_ClassDefaultObject)
	{
		GetObjectsOfClass(T::StaticClass(), Objects, true, ExclusionFlags);
	}

	explicit operator bool() const { return Index < Objects.Num(); }
	T* operator*() const { return static_cast<T*>(Objects[Index]); }
	T* operator->() const { return **this; }
	TObjectIterator& operator++()
	{
		++Index;
		return *this;
	}

private:
	TArray<UObject*> Objects;
	int32 Index = 0;
};
