#pragma once

#include "UObject/ScriptDelegates.h"

#include <new>
#include <tuple>
#include <type_traits>
#include <utility>

/**
 * Delegates that call a reflected function by its name.
 *
 * HeaderTool reads the declarations too: a member variable of such a type can be a UPROPERTY, and
 * "<Name>__DelegateSignature" (the name without its F) describes the parameters.
 */
namespace DynamicDelegate
{
template <typename T>
using TStored = std::remove_cv_t<std::remove_reference_t<T>>;

/** Values that lie as members of a struct would: the parameters of a reflected function, the return value last. */
template <typename... Types>
class TParms
{
public:
	template <typename... ArgTypes>
	explicit TParms(ArgTypes&&... Args)
	{
		ConstructAll(std::index_sequence_for<Types...>(), std::forward<ArgTypes>(Args)...);
	}
	~TParms() { DestroyAll(std::index_sequence_for<Types...>()); }
	UE_NONCOPYABLE(TParms)

	void* GetMemory() { return Memory; }
	template <size_t Index>
	auto& Get()
	{
		return *reinterpret_cast<TType<Index>*>(Memory + GetOffset(Index));
	}

private:
	template <size_t Index>
	using TType = std::tuple_element_t<Index, std::tuple<Types...>>;

	/** With the count of the types, the size of all. */
	static constexpr size_t GetOffset(size_t Wanted)
	{
		constexpr size_t Sizes[] = { sizeof(Types)..., 1 };
		constexpr size_t Alignments[] = { alignof(Types)..., 1 };
		size_t Offset = 0;
		for (size_t Index = 0;; ++Index)
		{
			Offset = (Offset + Alignments[Index] - 1) / Alignments[Index] * Alignments[Index];
			if (Index == Wanted)
			{
				return Offset;
			}
			Offset += Sizes[Index];
		}
	}

	/** A value without an argument, that is the return value, begins empty. */
	template <size_t... Indices, typename... ArgTypes>
	void ConstructAll(std::index_sequence<Indices...>, ArgTypes&&... Args)
	{
		[[maybe_unused]] std::tuple<ArgTypes&&...> All(std::forward<ArgTypes>(Args)...);
		(Construct<Indices>(All), ...);
	}
	template <size_t Index, typename TupleType>
	void Construct(TupleType& Args)
	{
		if constexpr (Index < std::tuple_size_v<TupleType>)
		{
			::new (Memory + GetOffset(Index)) TType<Index>(std::get<Index>(Args));
		}
		else
		{
			::new (Memory + GetOffset(Index)) TType<Index>{};
		}
	}
	template <size_t... Indices>
	void DestroyAll(std::index_sequence<Indices...>)
	{
		(Destroy(Get<Indices>()), ...);
	}
	template <typename T>
	static void Destroy(T& Value)
	{
		Value.~T();
	}

	alignas(Types...) alignas(1) uint8 Memory[GetOffset(sizeof...(Types)) + 1];
};

/** What a function has put into a parameter that it takes by reference goes back to the caller. */
template <typename ParamType>
void CopyBack(std::remove_reference_t<ParamType>& Param, const TStored<ParamType>& Value)
{
	if constexpr (std::is_lvalue_reference_v<ParamType> && !std::is_const_v<std::remove_reference_t<ParamType>>)
	{
		Param = Value;
	}
}

template <typename... ParamTypes, typename ParmsType, size_t... Indices>
void CopyAllBack(ParmsType& Parms, std::index_sequence<Indices...>, std::remove_reference_t<ParamTypes>&... Params)
{
	(CopyBack<ParamTypes>(Params, Parms.template Get<Indices>()), ...);
}

/** "OnDied" of "&AHero::OnDied". */
inline FName GetFunctionName(const TCHAR* Text)
{
	const TCHAR* Name = nullptr;
	for (const TCHAR* At = Text; *At; ++At)
	{
		Name = At[0] == u':' && At[1] == u':' ? At + 2 : Name;
	}
	checkf(Name, TEXT("'%s' does not look like a member function"), Text);
	return FName(Name);
}
}

/** At most one function. Declared by DECLARE_DYNAMIC_DELEGATE, bound by BindDynamic. */
template <typename WeakPtrType, typename RetValType, typename... ParamTypes>
class TBaseDynamicDelegate : public TScriptDelegate<WeakPtrType>
{
public:
	TBaseDynamicDelegate() = default;
	explicit TBaseDynamicDelegate(const TScriptDelegate<WeakPtrType>& Other)
		: TScriptDelegate<WeakPtrType>(Other)
	{
	}

	/** Reports an error when the function is not a reflected one; it never is called then. */
	template <typename UserClass>
	void __Internal_BindDynamic(UserClass* InUserObject,
		std::type_identity_t<RetValType (UserClass::*)(ParamTypes...)> InMethodPtr, FName InFunctionName)
	{
		check(InUserObject && InMethodPtr);
		this->BindUFunction(InUserObject, InFunctionName);
		ensureAlwaysMsgf(this->IsBound(),
			TEXT("Unable to bind delegate to '%s' (function might not be marked as a UFUNCTION or object may be "
				 "pending kill)"),
			*InFunctionName.ToString());
	}

	bool ExecuteIfBound(ParamTypes... Params) const requires std::is_void_v<RetValType>
	{
		const bool bIsBound = this->IsBound();
		if (bIsBound)
		{
			Execute(std::forward<ParamTypes>(Params)...);
		}
		return bIsBound;
	}

	/** Ends the process when nothing is bound. */
	RetValType Execute(ParamTypes... Params) const
	{
		constexpr std::index_sequence_for<ParamTypes...> Indices;
		if constexpr (std::is_void_v<RetValType>)
		{
			DynamicDelegate::TParms<DynamicDelegate::TStored<ParamTypes>...> Parms(Params...);
			this->ProcessDelegate(Parms.GetMemory());
			DynamicDelegate::CopyAllBack<ParamTypes...>(Parms, Indices, Params...);
		}
		else
		{
			DynamicDelegate::TParms<DynamicDelegate::TStored<ParamTypes>..., DynamicDelegate::TStored<RetValType>>
			Parms(Params...);
			this->ProcessDelegate(Parms.GetMemory());
			DynamicDelegate::CopyAllBack<ParamTypes...>(Parms, Indices, Params...);
			return Parms.template Get<sizeof...(ParamTypes)>();
		}
	}
};

/** Any number of functions. Declared by DECLARE_DYNAMIC_MULTICAST_DELEGATE, bound by AddDynamic. */
template <typename WeakPtrType, typename RetValType, typename... ParamTypes>
class TBaseDynamicMulticastDelegate : public TMulticastScriptDelegate<WeakPtrType>
{
	static_assert(std::is_void_v<RetValType>, "A multicast delegate returns nothing");
	using FSingle = TBaseDynamicDelegate<WeakPtrType, void, ParamTypes...>;
	template <typename UserClass>
	using TMethod = std::type_identity_t<void (UserClass::*)(ParamTypes...)>;

public:
	TBaseDynamicMulticastDelegate() = default;
	explicit TBaseDynamicMulticastDelegate(const TMulticastScriptDelegate<WeakPtrType>& Other)
		: TMulticastScriptDelegate<WeakPtrType>(Other)
	{
	}

	template <typename UserClass>
	bool __Internal_IsAlreadyBound(UserClass* InUserObject, TMethod<UserClass> InMethodPtr, FName InFunctionName) const
	{
		check(InUserObject && InMethodPtr);
		return this->Contains(InUserObject, InFunctionName);
	}
	template <typename UserClass>
	void __Internal_AddDynamic(UserClass* InUserObject, TMethod<UserClass> InMethodPtr, FName InFunctionName)
	{
		FSingle Delegate;
		Delegate.__Internal_BindDynamic(InUserObject, InMethodPtr, InFunctionName);
		this->Add(Delegate);
	}
	template <typename UserClass>
	void __Internal_AddUniqueDynamic(UserClass* InUserObject, TMethod<UserClass> InMethodPtr, FName InFunctionName)
	{
		FSingle Delegate;
		Delegate.__Internal_BindDynamic(InUserObject, InMethodPtr, InFunctionName);
		this->AddUnique(Delegate);
	}
	template <typename UserClass>
	void __Internal_RemoveDynamic(UserClass* InUserObject, TMethod<UserClass> InMethodPtr, FName InFunctionName)
	{
		check(InUserObject && InMethodPtr);
		this->Remove(InUserObject, InFunctionName);
	}

	void Broadcast(ParamTypes... Params) const
	{
		DynamicDelegate::TParms<DynamicDelegate::TStored<ParamTypes>...> Parms(Params...);
		this->ProcessMulticastDelegate(Parms.GetMemory());
		DynamicDelegate::CopyAllBack<ParamTypes...>(Parms, std::index_sequence_for<ParamTypes...>(), Params...);
	}
};

#define STATIC_FUNCTION_FNAME(Text) DynamicDelegate::GetFunctionName(Text)

// The name is what the macro's caller writes: &UMyClass::MyFunction, in full.
#define BindDynamic(UserObject, FuncName)                                                                              \
	__Internal_BindDynamic(UserObject, FuncName, STATIC_FUNCTION_FNAME(TEXT(#FuncName)))
#define AddDynamic(UserObject, FuncName)                                                                               \
	__Internal_AddDynamic(UserObject, FuncName, STATIC_FUNCTION_FNAME(TEXT(#FuncName)))
#define AddUniqueDynamic(UserObject, FuncName)                                                                         \
	__Internal_AddUniqueDynamic(UserObject, FuncName, STATIC_FUNCTION_FNAME(TEXT(#FuncName)))
#define RemoveDynamic(UserObject, FuncName)                                                                            \
	__Internal_RemoveDynamic(UserObject, FuncName, STATIC_FUNCTION_FNAME(TEXT(#FuncName)))
#define IsAlreadyBound(UserObject, FuncName)                                                                           \
	__Internal_IsAlreadyBound(UserObject, FuncName, STATIC_FUNCTION_FNAME(TEXT(#FuncName)))

#define DYNAMIC_DELEGATE_CLASS(DelegateName, Base, ...)                                                                \
	class DelegateName : public Base<FWeakObjectPtr, __VA_ARGS__>                                                      \
	{                                                                                                                  \
	public:                                                                                                            \
		using Base<FWeakObjectPtr, __VA_ARGS__>::Base;                                                                 \
	};

// Unlike other delegates, these take a name behind each type: they are what a Blueprint shows.
#define DECLARE_DYNAMIC_DELEGATE(DelegateName) DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicDelegate, void)
#define DECLARE_DYNAMIC_DELEGATE_OneParam(DelegateName, T1, N1)                                                        \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicDelegate, void, T1)
#define DECLARE_DYNAMIC_DELEGATE_TwoParams(DelegateName, T1, N1, T2, N2)                                               \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicDelegate, void, T1, T2)
#define DECLARE_DYNAMIC_DELEGATE_ThreeParams(DelegateName, T1, N1, T2, N2, T3, N3)                                     \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicDelegate, void, T1, T2, T3)
#define DECLARE_DYNAMIC_DELEGATE_FourParams(DelegateName, T1, N1, T2, N2, T3, N3, T4, N4)                              \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicDelegate, void, T1, T2, T3, T4)

#define DECLARE_DYNAMIC_DELEGATE_RetVal(RetValType, DelegateName)                                                      \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicDelegate, RetValType)
#define DECLARE_DYNAMIC_DELEGATE_RetVal_OneParam(RetValType, DelegateName, T1, N1)                                     \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicDelegate, RetValType, T1)
#define DECLARE_DYNAMIC_DELEGATE_RetVal_TwoParams(RetValType, DelegateName, T1, N1, T2, N2)                            \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicDelegate, RetValType, T1, T2)
#define DECLARE_DYNAMIC_DELEGATE_RetVal_ThreeParams(RetValType, DelegateName, T1, N1, T2, N2, T3, N3)                  \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicDelegate, RetValType, T1, T2, T3)

#define DECLARE_DYNAMIC_MULTICAST_DELEGATE(DelegateName)                                                               \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicMulticastDelegate, void)
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE_OneParam(DelegateName, T1, N1)                                              \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicMulticastDelegate, void, T1)
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(DelegateName, T1, N1, T2, N2)                                     \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicMulticastDelegate, void, T1, T2)
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE_ThreeParams(DelegateName, T1, N1, T2, N2, T3, N3)                           \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicMulticastDelegate, void, T1, T2, T3)
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE_FourParams(DelegateName, T1, N1, T2, N2, T3, N3, T4, N4)                    \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicMulticastDelegate, void, T1, T2, T3, T4)
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE_FiveParams(DelegateName, T1, N1, T2, N2, T3, N3, T4, N4, T5, N5)            \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicMulticastDelegate, void, T1, T2, T3, T4, T5)
#define DECLARE_DYNAMIC_MULTICAST_DELEGATE_SixParams(DelegateName, T1, N1, T2, N2, T3, N3, T4, N4, T5, N5, T6, N6)     \
	DYNAMIC_DELEGATE_CLASS(DelegateName, TBaseDynamicMulticastDelegate, void, T1, T2, T3, T4, T5, T6)
