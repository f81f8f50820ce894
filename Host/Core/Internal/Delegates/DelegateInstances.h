#pragma once

#include "Delegates/IDelegateInstance.h"
#include "Templates/SharedPointer.h"

#include <tuple>
#include <type_traits>

template <class T>
struct TWeakObjectPtr;

/** What a delegate calls. Immutable, so that copies of a delegate can share it. */
template <typename Ret, typename... ParamTypes>
class IDelegateBinding
{
public:
	virtual ~IDelegateBinding() = default;
	virtual Ret Execute(ParamTypes... Params) const = 0;
	/** False when a weakly bound object is gone. */
	virtual bool IsAlive() const { return true; }
	/** The object that the binding belongs to, for RemoveAll; null for functions and lambdas. */
	virtual const void* GetObject() const { return nullptr; }
};

/** A free function or lambda, with payload values behind the delegate's own parameters. */
template <typename FunctorType, typename Ret, typename Params, typename... VarTypes>
class TFunctorBinding;

template <typename FunctorType, typename Ret, typename... ParamTypes, typename... VarTypes>
class TFunctorBinding<FunctorType, Ret, std::tuple<ParamTypes...>, VarTypes...> final
	: public IDelegateBinding<Ret, ParamTypes...>
{
public:
	template <typename F, typename... V>
	explicit TFunctorBinding(F&& InFunctor, V&&... Vars)
		: Functor(std::forward<F>(InFunctor))
		, Payload(std::forward<V>(Vars)...)
	{
	}

	Ret Execute(ParamTypes... Params) const override
	{
		return std::apply(
			[&](auto&... Vars) -> Ret { return Functor(std::forward<ParamTypes>(Params)..., Vars...); }, Payload);
	}

private:
	mutable FunctorType Functor;
	mutable std::tuple<VarTypes...> Payload;
};

/** How an object is held: each offers Resolve() (null when gone), IsAlive() and GetKey(). */
template <typename UserClass>
struct TRawHolder
{
	UserClass* Object;
	UserClass* Resolve() const { return Object; }
	bool IsAlive() const { return true; }
	const void* GetKey() const { return Object; }
};

template <typename UserClass, ESPMode Mode>
struct TSharedHolder
{
	TWeakPtr<UserClass, Mode> Object;
	const void* Key;
	TSharedPtr<UserClass, Mode> Resolve() const { return Object.Pin(); }
	bool IsAlive() const { return Object.IsValid(); }
	const void* GetKey() const { return Key; }
};

template <typename UserClass>
struct TUObjectHolder
{
	TWeakObjectPtr<UserClass> Object;
	UserClass* Resolve() const { return Object.Get(); }
	bool IsAlive() const { return Object.IsValid(); }
	const void* GetKey() const { return Object.Get(); }
};

/** A member function, or a lambda that lives as long as an object. */
template <typename HolderType, typename CallableType, typename Ret, typename Params, typename... VarTypes>
class TObjectBinding;

template <typename HolderType, typename CallableType, typename Ret, typename... ParamTypes, typename... VarTypes>
class TObjectBinding<HolderType, CallableType, Ret, std::tuple<ParamTypes...>, VarTypes...> final
	: public IDelegateBinding<Ret, ParamTypes...>
{
public:
	template <typename C, typename... V>
	TObjectBinding(HolderType InHolder, C&& InCallable, V&&... Vars)
		: Holder(MoveTemp(InHolder))
		, Callable(std::forward<C>(InCallable))
		, Payload(std::forward<V>(Vars)...)
	{
	}

	Ret Execute(ParamTypes... Params) const override
	{
		// Kept for the length of the call: the callee may drop the last other reference to itself.
		auto Object = Holder.Resolve();
		checkf(Object, TEXT("Internal error: a dead binding was executed"));
		return std::apply(
			[&](auto&... Vars) -> Ret {
				if constexpr (std::is_member_function_pointer_v<CallableType>)
				{
					return ((*Object).*Callable)(std::forward<ParamTypes>(Params)..., Vars...);
				}
				else
				{
					return Callable(std::forward<ParamTypes>(Params)..., Vars...);
				}
			},
			Payload);
	}
	bool IsAlive() const override { return Holder.IsAlive(); }
	const void* GetObject() const override { return Holder.GetKey(); }

private:
	HolderType Holder;
	mutable CallableType Callable;
	mutable std::tuple<VarTypes...> Payload;
};
