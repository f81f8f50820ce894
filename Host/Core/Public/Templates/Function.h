#pragma once

#include "Misc/AssertionMacros.h"
#include "Templates/UnrealTemplate.h"

#include <functional>
#include <memory>
#include <type_traits>

template <typename FuncType>
class TFunction;
template <typename FuncType>
class TUniqueFunction;
template <typename FuncType>
class TFunctionRef;

/** A copyable callable that owns what it calls. Calling an unset one asserts. */
template <typename Ret, typename... ParamTypes>
class TFunction<Ret(ParamTypes...)>
{
public:
	TFunction() = default;
	TFunction(std::nullptr_t) {}
	template <typename FunctorType>
	requires(!std::is_same_v<std::decay_t<FunctorType>, TFunction> &&
			 std::is_invocable_r_v<Ret, std::decay_t<FunctorType>&, ParamTypes...>) TFunction(FunctorType&& Functor)
		: Function(std::forward<FunctorType>(Functor))
	{
	}

	Ret operator()(ParamTypes... Params) const
	{
		checkf(Function, TEXT("Attempting to call an unbound TFunction!"));
		return Function(std::forward<ParamTypes>(Params)...);
	}
	explicit operator bool() const { return static_cast<bool>(Function); }
	bool IsSet() const { return static_cast<bool>(Function); }
	void Reset() { Function = nullptr; }
	friend bool operator==(const TFunction& A, std::nullptr_t) { return !A.IsSet(); }

private:
	std::function<Ret(ParamTypes...)> Function;
};

/** A callable that can only be moved, so it may own things that cannot be copied. */
template <typename Ret, typename... ParamTypes>
class TUniqueFunction<Ret(ParamTypes...)>
{
public:
	TUniqueFunction() = default;
	TUniqueFunction(std::nullptr_t) {}
	template <typename FunctorType>
	requires(!std::is_same_v<std::decay_t<FunctorType>, TUniqueFunction> &&
			 std::is_invocable_r_v<Ret, std::decay_t<FunctorType>&, ParamTypes...>)
		TUniqueFunction(FunctorType&& Functor)
		: Callable(new TCallable<std::decay_t<FunctorType>>(std::forward<FunctorType>(Functor)))
	{
	}
	TUniqueFunction(TUniqueFunction&&) = default;
	TUniqueFunction& operator=(TUniqueFunction&&) = default;

	Ret operator()(ParamTypes... Params) const
	{
		checkf(Callable, TEXT("Attempting to call an unbound TUniqueFunction!"));
		return Callable->Call(std::forward<ParamTypes>(Params)...);
	}
	explicit operator bool() const { return Callable != nullptr; }
	bool IsSet() const { return Callable != nullptr; }
	void Reset() { Callable.reset(); }

private:
	struct ICallable
	{
		virtual ~ICallable() = default;
		virtual Ret Call(ParamTypes... Params) = 0;
	};
	template <typename FunctorType>
	struct TCallable final : ICallable
	{
		template <typename T>
		explicit TCallable(T&& InFunctor)
			: Functor(std::forward<T>(InFunctor))
		{
		}
		Ret Call(ParamTypes... Params) override { return Functor(std::forward<ParamTypes>(Params)...); }
		FunctorType Functor;
	};

	std::unique_ptr<ICallable> Callable;
};

/** Somebody else's callable, for the length of a call. Never stored. */
template <typename Ret, typename... ParamTypes>
class TFunctionRef<Ret(ParamTypes...)>
{
public:
	template <typename FunctorType>
	requires(!std::is_same_v<std::decay_t<FunctorType>, TFunctionRef> &&
			 std::is_invocable_r_v<Ret, FunctorType&, ParamTypes...>) TFunctionRef(FunctorType&& Functor)
		: Object(const_cast<void*>(static_cast<const void*>(&Functor)))
		, Caller([](void* InObject, ParamTypes... Params) -> Ret {
			return (*static_cast<std::remove_reference_t<FunctorType>*>(InObject))(std::forward<ParamTypes>(Params)...);
		})
	{
	}
	Ret operator()(ParamTypes... Params) const { return Caller(Object, std::forward<ParamTypes>(Params)...); }

private:
	void* Object;
	Ret (*Caller)(void*, ParamTypes...);
};
