#pragma once

#include "../../Internal/Delegates/DelegateInstances.h"
#include "Containers/Array.h"

#include <memory>

struct FDefaultDelegateUserPolicy
{
};
/** Delegates that are handed between threads are a type of their own, so that the two are not mixed up. */
struct FDefaultTSDelegateUserPolicy
{
};

template <typename DelegateSignature, typename UserPolicy = FDefaultDelegateUserPolicy>
class TDelegate;
template <typename DelegateSignature, typename UserPolicy = FDefaultDelegateUserPolicy>
class TMulticastDelegate;
template <typename DelegateSignature>
using TTSDelegate = TDelegate<DelegateSignature, FDefaultTSDelegateUserPolicy>;

template <typename UserClass, typename FuncType>
struct TMemFunPtr;
template <typename UserClass, typename Ret, typename... ParamTypes>
struct TMemFunPtr<UserClass, Ret(ParamTypes...)>
{
	using Type = Ret (std::remove_const_t<UserClass>::*)(ParamTypes...);
	using ConstType = Ret (std::remove_const_t<UserClass>::*)(ParamTypes...) const;
};

/**
 * A single-cast delegate: nothing, or one function to call.
 *
 * Raw bindings do not track their object; SP and UObject bindings are weak, and a delegate whose object is gone counts
 * as unbound. Executing an unbound delegate asserts. A bound function must have exactly the delegate's parameters,
 * followed by the types of the payload values.
 */
template <typename Ret, typename... ParamTypes, typename UserPolicy>
class TDelegate<Ret(ParamTypes...), UserPolicy>
{
	using FBinding = IDelegateBinding<Ret, ParamTypes...>;
	using FParams = std::tuple<ParamTypes...>;

public:
	using RetValType = Ret;

	TDelegate() = default;
	TDelegate(std::nullptr_t) {}

	bool IsBound() const { return Binding && Binding->IsAlive(); }
	void Unbind() { Binding.reset(); }
	bool IsBoundToObject(const void* Object) const { return IsBound() && Object && Binding->GetObject() == Object; }
	const void* GetObjectForRemoval() const { return Binding ? Binding->GetObject() : nullptr; }
	FDelegateHandle GetHandle() const { return Handle; }

	Ret Execute(ParamTypes... Params) const
	{
		checkf(IsBound(), TEXT("Attempting to execute an unbound delegate"));
		// The callee may rebind or destroy this very delegate.
		const std::shared_ptr<const FBinding> Kept = Binding;
		return Kept->Execute(std::forward<ParamTypes>(Params)...);
	}
	bool ExecuteIfBound(ParamTypes... Params) const requires std::is_void_v<Ret>
	{
		if (!IsBound())
		{
			return false;
		}
		Execute(std::forward<ParamTypes>(Params)...);
		return true;
	}

	template <typename... VarTypes>
	void BindStatic(
		std::type_identity_t<Ret (*)(ParamTypes..., std::decay_t<VarTypes>...)> Function, VarTypes&&... Vars)
	{
		Set(std::make_shared<TFunctorBinding<decltype(Function), Ret, FParams, std::decay_t<VarTypes>...>>(
			Function, std::forward<VarTypes>(Vars)...));
	}
	template <typename FunctorType, typename... VarTypes>
	void BindLambda(FunctorType&& Functor, VarTypes&&... Vars)
	{
		Set(std::make_shared<TFunctorBinding<std::decay_t<FunctorType>, Ret, FParams, std::decay_t<VarTypes>...>>(
			std::forward<FunctorType>(Functor), std::forward<VarTypes>(Vars)...));
	}

	template <typename UserClass, typename... VarTypes>
	void BindRaw(UserClass* Object,
		typename TMemFunPtr<UserClass, Ret(ParamTypes..., std::decay_t<VarTypes>...)>::Type Function,
		VarTypes&&... Vars)
	{
		BindHolder(TRawHolder<UserClass>{ Object }, Function, std::forward<VarTypes>(Vars)...);
	}
	template <typename UserClass, typename... VarTypes>
	void BindRaw(UserClass* Object,
		typename TMemFunPtr<UserClass, Ret(ParamTypes..., std::decay_t<VarTypes>...)>::ConstType Function,
		VarTypes&&... Vars)
	{
		BindHolder(TRawHolder<UserClass>{ Object }, Function, std::forward<VarTypes>(Vars)...);
	}

	template <typename UserClass, ESPMode Mode, typename... VarTypes>
	void BindSP(const TSharedRef<UserClass, Mode>& Object,
		typename TMemFunPtr<UserClass, Ret(ParamTypes..., std::decay_t<VarTypes>...)>::Type Function,
		VarTypes&&... Vars)
	{
		BindHolder(TSharedHolder<UserClass, Mode>{ Object, &Object.Get() }, Function, std::forward<VarTypes>(Vars)...);
	}
	template <typename UserClass, ESPMode Mode, typename... VarTypes>
	void BindSP(const TSharedRef<UserClass, Mode>& Object,
		typename TMemFunPtr<UserClass, Ret(ParamTypes..., std::decay_t<VarTypes>...)>::ConstType Function,
		VarTypes&&... Vars)
	{
		BindHolder(TSharedHolder<UserClass, Mode>{ Object, &Object.Get() }, Function, std::forward<VarTypes>(Vars)...);
	}
	template <typename UserClass, typename... VarTypes>
	void BindSP(UserClass* Object,
		typename TMemFunPtr<UserClass, Ret(ParamTypes..., std::decay_t<VarTypes>...)>::Type Function,
		VarTypes&&... Vars)
	{
		BindSP(StaticCastSharedRef<UserClass>(Object->AsShared()), Function, std::forward<VarTypes>(Vars)...);
	}
	template <typename UserClass, typename... VarTypes>
	void BindSP(UserClass* Object,
		typename TMemFunPtr<UserClass, Ret(ParamTypes..., std::decay_t<VarTypes>...)>::ConstType Function,
		VarTypes&&... Vars)
	{
		BindSP(StaticCastSharedRef<UserClass>(Object->AsShared()), Function, std::forward<VarTypes>(Vars)...);
	}

	template <typename UserClass, typename... VarTypes>
	void BindUObject(UserClass* Object,
		typename TMemFunPtr<UserClass, Ret(ParamTypes..., std::decay_t<VarTypes>...)>::Type Function,
		VarTypes&&... Vars)
	{
		BindHolder(
			TUObjectHolder<UserClass>{ TWeakObjectPtr<UserClass>(Object) }, Function, std::forward<VarTypes>(Vars)...);
	}
	template <typename UserClass, typename... VarTypes>
	void BindUObject(UserClass* Object,
		typename TMemFunPtr<UserClass, Ret(ParamTypes..., std::decay_t<VarTypes>...)>::ConstType Function,
		VarTypes&&... Vars)
	{
		BindHolder(
			TUObjectHolder<UserClass>{ TWeakObjectPtr<UserClass>(Object) }, Function, std::forward<VarTypes>(Vars)...);
	}
	template <typename UserClass, typename FunctorType, typename... VarTypes>
	void BindWeakLambda(UserClass* Object, FunctorType&& Functor, VarTypes&&... Vars)
	{
		BindHolder(TUObjectHolder<UserClass>{ TWeakObjectPtr<UserClass>(Object) }, std::forward<FunctorType>(Functor),
			std::forward<VarTypes>(Vars)...);
	}

#define UE_DECLARE_DELEGATE_CREATE(Form)                                                                               \
	template <typename First, typename... RestTypes>                                                                   \
	[[nodiscard]] static TDelegate Create##Form(First&& InFirst, RestTypes&&... Rest) requires requires(TDelegate D)   \
	{                                                                                                                  \
		D.Bind##Form(std::forward<First>(InFirst), std::forward<RestTypes>(Rest)...);                                  \
	}                                                                                                                  \
	{                                                                                                                  \
		TDelegate Result;                                                                                              \
		Result.Bind##Form(std::forward<First>(InFirst), std::forward<RestTypes>(Rest)...);                             \
		return Result;                                                                                                 \
	}
	UE_DECLARE_DELEGATE_CREATE(Lambda)
	UE_DECLARE_DELEGATE_CREATE(Raw)
	UE_DECLARE_DELEGATE_CREATE(SP)
	UE_DECLARE_DELEGATE_CREATE(SPLambda)
	UE_DECLARE_DELEGATE_CREATE(UObject)
	UE_DECLARE_DELEGATE_CREATE(WeakLambda)
#undef UE_DECLARE_DELEGATE_CREATE
	template <typename... VarTypes>
	[[nodiscard]] static TDelegate CreateStatic(
		std::type_identity_t<Ret (*)(ParamTypes..., std::decay_t<VarTypes>...)> Function, VarTypes&&... Vars)
	{
		TDelegate Result;
		Result.BindStatic(Function, std::forward<VarTypes>(Vars)...);
		return Result;
	}

private:
	template <typename HolderType, typename CallableType, typename... VarTypes>
	void BindHolder(HolderType Holder, CallableType&& Callable, VarTypes&&... Vars)
	{
		Set(std::make_shared<
			TObjectBinding<HolderType, std::decay_t<CallableType>, Ret, FParams, std::decay_t<VarTypes>...>>(
			MoveTemp(Holder), std::forward<CallableType>(Callable), std::forward<VarTypes>(Vars)...));
	}
	void Set(std::shared_ptr<const FBinding> NewBinding)
	{
		Binding = std::move(NewBinding);
		Handle = FDelegateHandle(FDelegateHandle::GenerateNewHandle);
	}

	std::shared_ptr<const FBinding> Binding;
	FDelegateHandle Handle;
};

/**
 * A multicast delegate. The last added is called first, and nothing should depend on it. Adding and removing inside a
 * broadcast is safe; what is added is not called in it.
 */
template <typename... ParamTypes, typename UserPolicy>
class TMulticastDelegate<void(ParamTypes...), UserPolicy>
{
public:
	using FDelegate = TDelegate<void(ParamTypes...), UserPolicy>;

	FDelegateHandle Add(const FDelegate& Delegate)
	{
		if (Delegate.IsBound())
		{
			Invocations.Add(Delegate);
		}
		return Delegate.GetHandle();
	}
	template <typename... ArgTypes>
	FDelegateHandle AddStatic(ArgTypes&&... Args)
	{
		return Add(FDelegate::CreateStatic(std::forward<ArgTypes>(Args)...));
	}
	template <typename... ArgTypes>
	FDelegateHandle AddLambda(ArgTypes&&... Args)
	{
		return Add(FDelegate::CreateLambda(std::forward<ArgTypes>(Args)...));
	}
#define UE_DECLARE_MULTICAST_ADD(Form)                                                                                 \
	template <typename ObjectType, typename... ArgTypes>                                                               \
	FDelegateHandle Add##Form(ObjectType&& Object, ArgTypes&&... Args)                                                 \
	{                                                                                                                  \
		FDelegate Delegate;                                                                                            \
		Delegate.Bind##Form(std::forward<ObjectType>(Object), std::forward<ArgTypes>(Args)...);                        \
		return Add(Delegate);                                                                                          \
	}
	UE_DECLARE_MULTICAST_ADD(Raw)
	UE_DECLARE_MULTICAST_ADD(SP)
	UE_DECLARE_MULTICAST_ADD(SPLambda)
	UE_DECLARE_MULTICAST_ADD(UObject)
	UE_DECLARE_MULTICAST_ADD(WeakLambda)
#undef UE_DECLARE_MULTICAST_ADD

	bool Remove(FDelegateHandle Handle)
	{
		return Handle.IsValid() && Invocations.RemoveAll([&Handle](const FDelegate& Delegate) {
			return Delegate.GetHandle() == Handle;
		}) > 0;
	}
	int32 RemoveAll(const void* Object)
	{
		return Invocations.RemoveAll(
			[Object](const FDelegate& Delegate) { return Object && Delegate.GetObjectForRemoval() == Object; });
	}
	void Clear()
	{
		Invocations.Empty();
	}
	bool IsBound() const
	{
		return Invocations.ContainsByPredicate([](const FDelegate& Delegate) { return Delegate.IsBound(); });
	}
	bool IsBoundToObject(const void* Object) const
	{
		return Invocations.ContainsByPredicate(
			[Object](const FDelegate& Delegate) { return Delegate.IsBoundToObject(Object); });
	}

	void Broadcast(ParamTypes... Params) const
	{
		const TArray<FDelegate> Snapshot = Invocations;
		for (int32 Index = Snapshot.Num() - 1; Index >= 0; --Index)
		{
			const FDelegate& Delegate = Snapshot[Index];
			if (Delegate.IsBound() && IsStillBound(Delegate.GetHandle()))
			{
				Delegate.Execute(Params...);
			}
		}
	}

private:
	bool IsStillBound(FDelegateHandle Handle) const
	{
		return Invocations.ContainsByPredicate(
			[&Handle](const FDelegate& Delegate) { return Delegate.GetHandle() == Handle; });
	}

	TArray<FDelegate> Invocations;
};

#define DECLARE_DELEGATE(DelegateName) typedef TDelegate<void()> DelegateName;
#define DECLARE_DELEGATE_OneParam(DelegateName, P1) typedef TDelegate<void(P1)> DelegateName;
#define DECLARE_DELEGATE_TwoParams(DelegateName, P1, P2) typedef TDelegate<void(P1, P2)> DelegateName;
#define DECLARE_DELEGATE_ThreeParams(DelegateName, P1, P2, P3) typedef TDelegate<void(P1, P2, P3)> DelegateName;
#define DECLARE_DELEGATE_FourParams(DelegateName, P1, P2, P3, P4) typedef TDelegate<void(P1, P2, P3, P4)> DelegateName;
#define DECLARE_DELEGATE_RetVal(Ret, DelegateName) typedef TDelegate<Ret()> DelegateName;
#define DECLARE_DELEGATE_RetVal_OneParam(Ret, DelegateName, P1) typedef TDelegate<Ret(P1)> DelegateName;
#define DECLARE_DELEGATE_RetVal_TwoParams(Ret, DelegateName, P1, P2) typedef TDelegate<Ret(P1, P2)> DelegateName;
#define DECLARE_DELEGATE_RetVal_ThreeParams(Ret, DelegateName, P1, P2, P3)                                             \
	typedef TDelegate<Ret(P1, P2, P3)> DelegateName;
#define DECLARE_MULTICAST_DELEGATE(DelegateName) typedef TMulticastDelegate<void()> DelegateName;
#define DECLARE_MULTICAST_DELEGATE_OneParam(DelegateName, P1) typedef TMulticastDelegate<void(P1)> DelegateName;
#define DECLARE_MULTICAST_DELEGATE_TwoParams(DelegateName, P1, P2)                                                     \
	typedef TMulticastDelegate<void(P1, P2)> DelegateName;
#define DECLARE_MULTICAST_DELEGATE_ThreeParams(DelegateName, P1, P2, P3)                                               \
	typedef TMulticastDelegate<void(P1, P2, P3)> DelegateName;
#define DECLARE_MULTICAST_DELEGATE_FourParams(DelegateName, P1, P2, P3, P4)                                            \
	typedef TMulticastDelegate<void(P1, P2, P3, P4)> DelegateName;
#define DECLARE_EVENT(OwningType, EventName) typedef TMulticastDelegate<void()> EventName;
#define DECLARE_EVENT_OneParam(OwningType, EventName, P1) typedef TMulticastDelegate<void(P1)> EventName;
#define DECLARE_EVENT_TwoParams(OwningType, EventName, P1, P2) typedef TMulticastDelegate<void(P1, P2)> EventName;

using FSimpleDelegate = TDelegate<void()>;
using FSimpleMulticastDelegate = TMulticastDelegate<void()>;

#include "../../Internal/Delegates/DynamicDelegate.h"
