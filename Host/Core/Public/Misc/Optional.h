#pragma once

#include "Misc/AssertionMacros.h"

#include <optional>
#include <utility>

struct FNullOpt
{
	explicit constexpr FNullOpt(int) {}
};
inline constexpr FNullOpt NullOpt{ 0 };

/** A value or none. GetValue on none asserts. */
template <typename OptionalType>
class TOptional
{
public:
	using ElementType = OptionalType;

	TOptional() = default;
	TOptional(FNullOpt) {}
	TOptional(const OptionalType& InValue)
		: Value(InValue)
	{
	}
	TOptional(OptionalType&& InValue)
		: Value(std::move(InValue))
	{
	}

	bool IsSet() const { return Value.has_value(); }
	explicit operator bool() const { return IsSet(); }
	OptionalType& GetValue()
	{
		checkf(IsSet(), TEXT("It is an error to call GetValue() on an unset TOptional"));
		return *Value;
	}
	const OptionalType& GetValue() const { return const_cast<TOptional*>(this)->GetValue(); }
	const OptionalType& Get(const OptionalType& DefaultValue) const { return IsSet() ? *Value : DefaultValue; }
	OptionalType& operator*() { return GetValue(); }
	const OptionalType& operator*() const { return GetValue(); }
	OptionalType* operator->() { return &GetValue(); }
	const OptionalType* operator->() const { return &GetValue(); }
	void Reset() { Value.reset(); }
	template <typename... ArgsType>
	OptionalType& Emplace(ArgsType&&... Args)
	{
		return Value.emplace(std::forward<ArgsType>(Args)...);
	}

	friend bool operator==(const TOptional& A, const TOptional& B)
	{
		return A.IsSet() == B.IsSet() && (!A.IsSet() || *A.Value == *B.Value);
	}

private:
	std::optional<OptionalType> Value;
};
