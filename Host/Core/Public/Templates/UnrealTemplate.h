#pragma once

#include "HAL/Platform.h"

#include <type_traits>
#include <utility>

/** As std::move, but refuses to "move" a const object or an rvalue, which would be a hidden copy or a no-op. */
template <typename T>
constexpr std::remove_reference_t<T>&& MoveTemp(T&& Obj)
{
	static_assert(std::is_lvalue_reference_v<T>, "MoveTemp called on an rvalue");
	static_assert(!std::is_const_v<std::remove_reference_t<T>>, "MoveTemp called on a const object");
	return static_cast<std::remove_reference_t<T>&&>(Obj);
}

/** MoveTemp without its refusals, for generic code. */
template <typename T>
constexpr std::remove_reference_t<T>&& MoveTempIfPossible(T&& Obj)
{
	return static_cast<std::remove_reference_t<T>&&>(Obj);
}

template <typename T>
constexpr T&& Forward(std::remove_reference_t<T>& Obj)
{
	return static_cast<T&&>(Obj);
}

template <typename T>
constexpr T&& Forward(std::remove_reference_t<T>&& Obj)
{
	return static_cast<T&&>(Obj);
}

template <typename T>
void Swap(T& A, T& B)
{
	T Temp = MoveTemp(A);
	A = MoveTemp(B);
	B = MoveTemp(Temp);
}

template <typename T>
struct TIdentity
{
	using Type = T;
};

/** Sets a variable for the length of a scope. */
template <typename RefType, typename AssignedType = RefType>
struct TGuardValue
{
	TGuardValue(RefType& InReference, const AssignedType& NewValue)
		: Reference(InReference)
		, Original(InReference)
	{
		Reference = NewValue;
	}
	~TGuardValue() { Reference = Original; }
	UE_NONCOPYABLE(TGuardValue)

private:
	RefType& Reference;
	AssignedType Original;
};

class FNoncopyable
{
protected:
	FNoncopyable() = default;
	~FNoncopyable() = default;

private:
	FNoncopyable(const FNoncopyable&) = delete;
	FNoncopyable& operator=(const FNoncopyable&) = delete;
};

/** A container may be walked by range-for up to the element that it had when the walk began. */
template <typename T>
constexpr bool TIsContiguousContainerValue = false;
