#pragma once

#include "Misc/AssertionMacros.h"
#include "Templates/UnrealTemplate.h"

/** Owns one object. Deleting an incomplete type does not compile: define the owner's destructor where the type is
 * known. */
template <typename T>
class TUniquePtr
{
public:
	TUniquePtr() = default;
	TUniquePtr(std::nullptr_t) {}
	explicit TUniquePtr(T* InPointer)
		: Pointer(InPointer)
	{
	}
	TUniquePtr(TUniquePtr&& Other)
		: Pointer(Other.Release())
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, T*> TUniquePtr(TUniquePtr<OtherType>&& Other)
		: Pointer(Other.Release())
	{
	}
	TUniquePtr(const TUniquePtr&) = delete;
	~TUniquePtr() { Reset(); }

	TUniquePtr& operator=(const TUniquePtr&) = delete;
	TUniquePtr& operator=(TUniquePtr&& Other)
	{
		if (this != &Other)
		{
			Reset(Other.Release());
		}
		return *this;
	}
	TUniquePtr& operator=(std::nullptr_t)
	{
		Reset();
		return *this;
	}

	bool IsValid() const { return Pointer != nullptr; }
	explicit operator bool() const { return IsValid(); }
	T* Get() const { return Pointer; }
	T* operator->() const
	{
		checkf(Pointer, TEXT("A null TUniquePtr was followed"));
		return Pointer;
	}
	T& operator*() const
	{
		checkf(Pointer, TEXT("A null TUniquePtr was followed"));
		return *Pointer;
	}
	[[nodiscard]] T* Release()
	{
		T* Released = Pointer;
		Pointer = nullptr;
		return Released;
	}
	void Reset(T* NewPointer = nullptr)
	{
		static_assert(sizeof(T) > 0, "Cannot delete an incomplete type");
		T* Old = Pointer;
		Pointer = NewPointer;
		delete Old;
	}

	friend bool operator==(const TUniquePtr& A, std::nullptr_t) { return !A.Pointer; }

private:
	T* Pointer = nullptr;
};

template <typename T, typename... ArgTypes>
TUniquePtr<T> MakeUnique(ArgTypes&&... Args)
{
	return TUniquePtr<T>(new T(std::forward<ArgTypes>(Args)...));
}
