#pragma once

#include "Misc/AssertionMacros.h"
#include "UObject/WeakObjectPtr.h"

#include <type_traits>

class UObject;

/** FWeakObjectPtr for objects of one class. */
template <typename T>
struct TWeakObjectPtr
{
	using ElementType = T;

	TWeakObjectPtr() = default;
	TWeakObjectPtr(decltype(nullptr)) {}
	template <typename U>
	requires std::is_convertible_v<U*, const T*> TWeakObjectPtr(U* Object)
		: Pointer(Object)
	{
	}
	template <typename U>
	requires(std::is_convertible_v<U*, const T*> && !std::is_same_v<T, U>)
		TWeakObjectPtr(const TWeakObjectPtr<U>& Other)
		: Pointer(Other.GetWeakPtrTypeBase())
	{
	}

	/** Null when the object is gone. */
	T* Get() const { return static_cast<T*>(Pointer.Get()); }
	T* GetEvenIfUnreachable() const { return static_cast<T*>(Pointer.GetEvenIfUnreachable()); }
	bool IsValid() const { return Pointer.IsValid(); }
	bool IsStale() const { return Pointer.IsStale(); }
	bool IsExplicitlyNull() const { return Pointer.IsExplicitlyNull(); }
	void Reset() { Pointer.Reset(); }
	T& operator*() const { return *operator->(); }
	T* operator->() const
	{
		T* Object = Get();
		checkf(Object, TEXT("A weak object pointer is used whose object is gone"));
		return Object;
	}
	explicit operator bool() const { return IsValid(); }
	const FWeakObjectPtr& GetWeakPtrTypeBase() const { return Pointer; }

	template <typename U>
	bool operator==(const TWeakObjectPtr<U>& Other) const
	{
		return Pointer == Other.GetWeakPtrTypeBase();
	}
	bool operator==(const T* Other) const { return Get() == Other; }
	bool operator==(decltype(nullptr)) const { return !IsValid(); }
	friend uint32 GetTypeHash(const TWeakObjectPtr& Weak) { return GetTypeHash(Weak.Pointer); }

private:
	FWeakObjectPtr Pointer;
};

template <typename T>
TWeakObjectPtr<T> MakeWeakObjectPtr(T* Object)
{
	return TWeakObjectPtr<T>(Object);
}
