#pragma once

#include "UObject/Class.h"

/** A class that is T or a child of it. Any other class that is put in comes out as null. */
template <typename T>
class TSubclassOf
{
public:
	using ElementType = T;

	TSubclassOf() = default;
	TSubclassOf(UClass* InClass)
		: Class(InClass)
	{
	}
	TSubclassOf(const UClass* InClass)
		: Class(const_cast<UClass*>(InClass))
	{
	}
	TSubclassOf(decltype(nullptr)) {}
	template <typename U>
	requires std::is_convertible_v<U*, T*> TSubclassOf(const TSubclassOf<U>& Other)
		: Class(Other.Get())
	{
	}

	UClass* Get() const { return Class && Class->IsChildOf(T::StaticClass()) ? Class : nullptr; }
	UClass* operator*() const { return Get(); }
	UClass* operator->() const { return Get(); }
	operator UClass*() const { return Get(); }
	T* GetDefaultObject() const
	{
		UClass* Valid = Get();
		return Valid ? static_cast<T*>(Valid->GetDefaultObject()) : nullptr;
	}
	friend uint32 GetTypeHash(const TSubclassOf& SubclassOf)
	{
		return ::GetTypeHash(static_cast<const void*>(SubclassOf.Class));
	}

private:
	UClass* Class = nullptr;
};
