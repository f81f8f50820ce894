#pragma once

#include "Templates/TypeHash.h"

#include <type_traits>
#include <utility>

/** The form of T* for reflected member variables. It converts to T* by itself and is laid out like one. */
template <typename T>
struct TObjectPtr
{
	using ElementType = T;

	TObjectPtr() = default;
	TObjectPtr(decltype(nullptr)) {}
	TObjectPtr(T* Object)
		: Pointer(Object)
	{
	}
	template <typename U>
	requires(std::is_convertible_v<U*, T*> && !std::is_same_v<T, U>) TObjectPtr(const TObjectPtr<U>& Other)
		: Pointer(Other.Get())
	{
	}
	TObjectPtr& operator=(T* Object)
	{
		Pointer = Object;
		return *this;
	}
	template <typename U>
	requires(std::is_convertible_v<U*, T*> && !std::is_same_v<T, U>) TObjectPtr& operator=(const TObjectPtr<U>& Other)
	{
		Pointer = Other.Get();
		return *this;
	}

	T* Get() const { return Pointer; }
	operator T*() const { return Pointer; }
	T* operator->() const { return Pointer; }
	T& operator*() const { return *Pointer; }
	bool operator!() const { return !Pointer; }
	explicit operator bool() const { return Pointer != nullptr; }

	template <typename U>
	bool operator==(const TObjectPtr<U>& Other) const
	{
		return Pointer == Other.Get();
	}
	template <typename U>
	bool operator==(U* Other) const
	{
		return Pointer == Other;
	}
	bool operator==(decltype(nullptr)) const { return !Pointer; }
	friend uint32 GetTypeHash(const TObjectPtr& Object)
	{
		return ::GetTypeHash(static_cast<const void*>(Object.Pointer));
	}

private:
	T* Pointer = nullptr;
};

template <typename T>
TObjectPtr<std::remove_pointer_t<T>> ObjectPtrWrap(T Object)
{
	return TObjectPtr<std::remove_pointer_t<T>>(Object);
}

template <typename T>
T* ToRawPtr(const TObjectPtr<T>& Object)
{
	return Object.Get();
}

template <typename T>
T* ToRawPtr(T* Object)
{
	return Object;
}
