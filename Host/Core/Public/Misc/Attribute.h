#pragma once

#include "CoreTypes.h"
#include "Delegates/Delegate.h"
#include "Templates/Function.h"
#include "Templates/SharedPointer.h"
#include "Templates/UnrealTemplate.h"

#include <type_traits>

/**
 * A value that is either given once or asked for by a getter every time it is read.
 *
 * A getter whose owner has died is no longer asked: the attribute keeps answering the last value it gave.
 */
template <typename ObjectType>
class TAttribute
{
public:
	using FGetter = TDelegate<ObjectType()>;

	/** An attribute that is not set. */
	TAttribute() = default;

	template <typename OtherType>
	requires(std::is_convertible_v<const OtherType&, ObjectType> &&
			 !std::is_same_v<std::remove_cvref_t<OtherType>, TAttribute>) TAttribute(const OtherType& InInitialValue)
		: Value(InInitialValue)
		, bIsSet(true)
	{
	}
	TAttribute(ObjectType&& InInitialValue)
		: Value(static_cast<ObjectType&&>(InInitialValue))
		, bIsSet(true)
	{
	}

	/** A bound attribute; a member getter of a shared object is held weakly. */
	template <typename SourceType>
	TAttribute(TSharedRef<SourceType> InUserObject, ObjectType (SourceType::*InMethod)() const)
		: bIsSet(true)
		, Getter(FGetter::CreateSP(InUserObject, InMethod))
	{
	}
	template <typename SourceType, typename MethodClass>
	requires std::is_base_of_v<MethodClass, SourceType> TAttribute(
		SourceType* InUserObject, ObjectType (MethodClass::*InMethod)() const)
		: bIsSet(true)
		, Getter(FGetter::CreateSP(InUserObject, InMethod))
	{
	}

	static TAttribute Create(const FGetter& InGetter)
	{
		TAttribute Attribute;
		Attribute.Bind(InGetter);
		return Attribute;
	}
	static TAttribute Create(TFunction<ObjectType()>&& InFunction)
	{
		return Create(FGetter::CreateLambda(MoveTemp(InFunction)));
	}
	template <typename LambdaType>
	static TAttribute CreateLambda(LambdaType&& InCallable)
	{
		return Create(FGetter::CreateLambda(static_cast<LambdaType&&>(InCallable)));
	}
	template <typename... PayloadTypes>
	static TAttribute CreateStatic(
		ObjectType (*InFunction)(std::type_identity_t<PayloadTypes>...), PayloadTypes... Payload)
	{
		return Create(FGetter::CreateStatic(InFunction, Payload...));
	}
	template <typename SourceType, typename MethodClass, typename... PayloadTypes>
	static TAttribute CreateRaw(SourceType* InObject,
		ObjectType (MethodClass::*InMethod)(std::type_identity_t<PayloadTypes>...) const, PayloadTypes... Payload)
	{
		return Create(FGetter::CreateRaw(InObject, InMethod, Payload...));
	}
	template <typename SourceType, typename MethodClass, typename... PayloadTypes>
	static TAttribute CreateSP(SourceType* InObject,
		ObjectType (MethodClass::*InMethod)(std::type_identity_t<PayloadTypes>...) const, PayloadTypes... Payload)
	{
		return Create(FGetter::CreateSP(InObject, InMethod, Payload...));
	}
	template <typename SourceType, typename MethodClass, typename... PayloadTypes>
	static TAttribute CreateSP(TSharedRef<SourceType> InObject,
		ObjectType (MethodClass::*InMethod)(std::type_identity_t<PayloadTypes>...) const, PayloadTypes... Payload)
	{
		return Create(FGetter::CreateSP(InObject, InMethod, Payload...));
	}
	template <typename SourceType, typename MethodClass, typename... PayloadTypes>
	static TAttribute CreateUObject(SourceType* InObject,
		ObjectType (MethodClass::*InMethod)(std::type_identity_t<PayloadTypes>...) const, PayloadTypes... Payload)
	{
		return Create(FGetter::CreateUObject(InObject, InMethod, Payload...));
	}

	void Bind(const FGetter& InGetter)
	{
		bIsSet = true;
		Getter = InGetter;
	}
	template <typename LambdaType>
	void BindLambda(LambdaType&& InCallable)
	{
		Bind(FGetter::CreateLambda(static_cast<LambdaType&&>(InCallable)));
	}

	/** Drops a binding. */
	template <typename OtherType>
	void Set(const OtherType& InNewValue)
	{
		Getter.Unbind();
		Value = InNewValue;
		bIsSet = true;
	}

	/** True for a given value and for a getter alike. */
	bool IsSet() const { return bIsSet; }
	bool IsBound() const { return Getter.IsBound(); }

	/** Asks the getter, if there is one. The reference is good until the next Get. */
	const ObjectType& Get() const
	{
		if (Getter.IsBound())
		{
			// A copy of the delegate keeps its lambda alive if the getter replaces this attribute.
			const FGetter Current = Getter;
			Value = Current.Execute();
		}
		return Value;
	}
	ObjectType Get(const ObjectType& DefaultValue) const { return bIsSet ? Get() : DefaultValue; }

	const FGetter& GetBinding() const { return Getter; }

private:
	mutable ObjectType Value{};
	bool bIsSet = false;
	FGetter Getter;
};

template <typename T>
TAttribute<std::decay_t<T>> MakeAttribute(T&& Value)
{
	return TAttribute<std::decay_t<T>>(static_cast<T&&>(Value));
}

/** The attribute's type is what the getter returns: a lambda that returns a literal makes no FText attribute. */
template <typename T, typename ObjectType, typename MethodClass>
TAttribute<T> MakeAttributeRaw(const ObjectType* Object, T (MethodClass::*Method)() const)
{
	return TAttribute<T>::CreateRaw(Object, Method);
}
template <typename T, typename ObjectType, typename MethodClass>
TAttribute<T> MakeAttributeSP(const ObjectType* Object, T (MethodClass::*Method)() const)
{
	return TAttribute<T>::CreateSP(Object, Method);
}
template <typename T, typename ObjectType, typename MethodClass>
TAttribute<T> MakeAttributeUObject(const ObjectType* Object, T (MethodClass::*Method)() const)
{
	return TAttribute<T>::CreateUObject(Object, Method);
}
template <typename LambdaType>
auto MakeAttributeLambda(LambdaType&& Lambda) -> TAttribute<std::invoke_result_t<LambdaType>>
{
	return TAttribute<std::invoke_result_t<LambdaType>>::CreateLambda(static_cast<LambdaType&&>(Lambda));
}
