#pragma once

#include "UObject/Class.h"
#include "UObject/ObjectPtr.h"
#include "UObject/WeakObjectPtrTemplates.h"

/** The object as a To, or null when it is null or of another class. */
template <typename To, typename From>
requires(std::is_base_of_v<UObject, From> && !requires { typename To::UClassType; }) To* Cast(From* Src)
{
	static_assert(std::is_base_of_v<UObject, To>, "Cast is for objects; fields are cast with CastField");
	return Src && static_cast<const UObject*>(Src)->IsA(To::StaticClass())
			   ? static_cast<To*>(const_cast<UObject*>(static_cast<const UObject*>(Src)))
			   : nullptr;
}

template <typename To, typename From>
requires(std::is_base_of_v<UObject, From> && !requires { typename To::UClassType; }) const To* Cast(const From* Src)
{
	return Cast<To>(const_cast<From*>(Src));
}

template <typename To, typename From>
To* Cast(const TObjectPtr<From>& Src)
{
	return Cast<To>(Src.Get());
}

template <typename To, typename From>
To* Cast(const TWeakObjectPtr<From>& Src)
{
	return Cast<To>(Src.Get());
}

/** The interface in an object whose class implements it in C++; null for any other. */
template <typename To, typename From>
requires(std::is_base_of_v<UObject, From> && !std::is_base_of_v<UObject, To> &&
		 requires { typename To::UClassType; }) To* Cast(From* Src)
{
	return Src ? static_cast<To*>(Src->GetNativeInterfaceAddress(To::UClassType::StaticClass())) : nullptr;
}

/** Cast that ends the process for null and for an object of another class. */
template <typename To, typename From>
To* CastChecked(From* Src)
{
	To* Result = Cast<To>(Src);
	checkf(Result, TEXT("Cast of %s to %s failed"), Src ? *Src->GetFullName() : TEXT("nullptr"),
		*To::StaticClass()->GetName());
	return Result;
}

template <typename To, typename From>
const To* CastChecked(const From* Src)
{
	return CastChecked<To>(const_cast<From*>(Src));
}

template <typename To, typename From>
To* CastChecked(const TObjectPtr<From>& Src)
{
	return CastChecked<To>(Src.Get());
}

/** The object when it is of this very class and not of a child. */
template <typename To>
To* ExactCast(UObject* Src)
{
	return Src && Src->GetClass() == To::StaticClass() ? static_cast<To*>(Src) : nullptr;
}
