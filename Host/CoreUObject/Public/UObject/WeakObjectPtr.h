#pragma once

#include "CoreTypes.h"
#include "Templates/TypeHash.h"

class UObject;

/** Names an object without keeping it. Null once the object is collected or marked as garbage. */
struct FWeakObjectPtr
{
	FWeakObjectPtr() = default;
	FWeakObjectPtr(decltype(nullptr)) {}
	FWeakObjectPtr(const UObject* Object) { *this = Object; }
	FWeakObjectPtr& operator=(const UObject* Object);

	UObject* Get() const;
	/** The object even when it is marked as garbage. */
	UObject* GetEvenIfUnreachable() const;
	bool IsValid() const { return Get() != nullptr; }
	/** Whether there was an object once that is gone now. */
	bool IsStale() const { return !IsExplicitlyNull() && !IsValid(); }
	bool IsExplicitlyNull() const { return ObjectIndex == INDEX_NONE; }
	void Reset() { *this = FWeakObjectPtr(); }

	/** Two that are both gone are equal. */
	bool operator==(const FWeakObjectPtr& Other) const
	{
		return HasSameIndexAndSerialNumber(Other) || (!IsValid() && !Other.IsValid());
	}
	bool HasSameIndexAndSerialNumber(const FWeakObjectPtr& Other) const
	{
		return ObjectIndex == Other.ObjectIndex && ObjectSerialNumber == Other.ObjectSerialNumber;
	}
	friend uint32 GetTypeHash(const FWeakObjectPtr& Pointer)
	{
		return static_cast<uint32>(Pointer.ObjectIndex ^ Pointer.ObjectSerialNumber);
	}

private:
	int32 ObjectIndex = INDEX_NONE;
	int32 ObjectSerialNumber = 0;
};
