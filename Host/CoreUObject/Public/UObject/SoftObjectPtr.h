#pragma once

#include "Templates/SubclassOf.h"
#include "UObject/SoftObjectPath.h"
#include "UObject/WeakObjectPtr.h"

/** A path, with the object it has been resolved to before. */
struct FSoftObjectPtr
{
	FSoftObjectPtr() = default;
	FSoftObjectPtr(const FSoftObjectPath& InPath)
		: Path(InPath)
	{
	}
	FSoftObjectPtr(const UObject* Object) { *this = Object; }
	FSoftObjectPtr& operator=(const UObject* Object);

	/** The object if it is in memory. */
	UObject* Get() const;
	/** The object, loaded if need be; null, with a warning, when it cannot be. */
	UObject* LoadSynchronous() const { return IsNull() ? nullptr : Path.TryLoad(); }
	const FSoftObjectPath& ToSoftObjectPath() const { return Path; }
	FString ToString() const { return Path.ToString(); }
	bool IsNull() const { return Path.IsNull(); }
	bool IsValid() const { return Get() != nullptr; }
	/** Whether it has a path whose object is not in memory. */
	bool IsPending() const { return !IsNull() && !IsValid(); }
	void Reset() { *this = FSoftObjectPtr(); }

	bool operator==(const FSoftObjectPtr& Other) const { return Path == Other.Path; }
	friend uint32 GetTypeHash(const FSoftObjectPtr& Pointer) { return GetTypeHash(Pointer.Path); }

private:
	mutable FWeakObjectPtr Cached;
	FSoftObjectPath Path;
};

/** FSoftObjectPtr for objects of one class. */
template <typename T>
struct TSoftObjectPtr
{
	TSoftObjectPtr() = default;
	TSoftObjectPtr(decltype(nullptr)) {}
	TSoftObjectPtr(T* Object)
		: Pointer(Object)
	{
	}
	explicit TSoftObjectPtr(const FSoftObjectPath& Path)
		: Pointer(Path)
	{
	}

	/** Null also for an object of another class. */
	T* Get() const
	{
		UObject* Object = Pointer.Get();
		return Object && Object->IsA(T::StaticClass()) ? static_cast<T*>(Object) : nullptr;
	}
	T* LoadSynchronous() const
	{
		UObject* Object = Pointer.LoadSynchronous();
		return Object && Object->IsA(T::StaticClass()) ? static_cast<T*>(Object) : nullptr;
	}
	const FSoftObjectPath& ToSoftObjectPath() const { return Pointer.ToSoftObjectPath(); }
	FString ToString() const { return Pointer.ToString(); }
	FString GetLongPackageName() const { return ToSoftObjectPath().GetLongPackageName(); }
	FString GetAssetName() const { return ToSoftObjectPath().GetAssetName(); }
	bool IsNull() const { return Pointer.IsNull(); }
	bool IsValid() const { return Get() != nullptr; }
	bool IsPending() const { return Pointer.IsPending(); }
	void Reset() { Pointer.Reset(); }
	T* operator->() const { return Get(); }
	explicit operator bool() const { return IsValid(); }
	bool operator==(const TSoftObjectPtr& Other) const { return Pointer == Other.Pointer; }
	friend uint32 GetTypeHash(const TSoftObjectPtr& Soft) { return GetTypeHash(Soft.Pointer); }

private:
	FSoftObjectPtr Pointer;
};

/** FSoftObjectPtr for a class and its children. */
template <typename T>
struct TSoftClassPtr
{
	TSoftClassPtr() = default;
	TSoftClassPtr(decltype(nullptr)) {}
	TSoftClassPtr(const UClass* Class)
		: Pointer(reinterpret_cast<const UObject*>(Class))
	{
	}
	explicit TSoftClassPtr(const FSoftObjectPath& Path)
		: Pointer(Path)
	{
	}

	UClass* Get() const { return TSubclassOf<T>(reinterpret_cast<UClass*>(Pointer.Get())).Get(); }
	UClass* LoadSynchronous() const
	{
		return TSubclassOf<T>(reinterpret_cast<UClass*>(Pointer.LoadSynchronous())).Get();
	}
	const FSoftObjectPath& ToSoftObjectPath() const { return Pointer.ToSoftObjectPath(); }
	FString ToString() const { return Pointer.ToString(); }
	bool IsNull() const { return Pointer.IsNull(); }
	bool IsValid() const { return Get() != nullptr; }
	bool operator==(const TSoftClassPtr& Other) const { return Pointer == Other.Pointer; }
	friend uint32 GetTypeHash(const TSoftClassPtr& Soft) { return GetTypeHash(Soft.Pointer); }

private:
	FSoftObjectPtr Pointer;
};
