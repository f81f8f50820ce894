#include "UObject/Interface.h"
#include "UObject/Package.h"
#include "UObject/ReflectedTypes.h"

// The classes that reflection itself is made of cannot be described by HeaderTool: they are described by hand.
#define IMPLEMENT_INTRINSIC_CLASS(TClass, InSuper, InFlags)                                                            \
	static void Construct_##TClass(const FObjectInitializer& Initializer)                                              \
	{                                                                                                                  \
		::new (static_cast<void*>(Initializer.GetObj())) TClass();                                                     \
	}                                                                                                                  \
	static constinit FClassParams Params_##TClass = { .Base = { .Name = &#TClass[1],                                   \
														  .Package = "/Script/CoreUObject" },                          \
		.Size = sizeof(TClass),                                                                                        \
		.Alignment = alignof(TClass),                                                                                  \
		.Super = InSuper,                                                                                              \
		.Flags = CLASS_Intrinsic | InFlags,                                                                            \
		.Construct = &Construct_##TClass,                                                                              \
		.AddReferencedObjects = &TClass::AddReferencedObjects };                                                       \
	COREUOBJECT_API UClass* ReflectedType_##TClass();                                                                  \
	COREUOBJECT_API UClass* ReflectedType_##TClass()                                                                   \
	{                                                                                                                  \
		return GetReflectedType(Params_##TClass);                                                                      \
	}                                                                                                                  \
	UClass* TClass::StaticClass()                                                                                      \
	{                                                                                                                  \
		return ReflectedType_##TClass();                                                                               \
	}                                                                                                                  \
	static const FReflectedTypeRegistration Registration_##TClass(Params_##TClass);

IMPLEMENT_INTRINSIC_CLASS(UObject, nullptr, CLASS_Abstract)
IMPLEMENT_INTRINSIC_CLASS(UField, &ReflectedType_UObject, CLASS_Abstract)
IMPLEMENT_INTRINSIC_CLASS(UStruct, &ReflectedType_UField, CLASS_Abstract)
IMPLEMENT_INTRINSIC_CLASS(UScriptStruct, &ReflectedType_UStruct, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UFunction, &ReflectedType_UStruct, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UDelegateFunction, &ReflectedType_UFunction, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UClass, &ReflectedType_UStruct, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UEnum, &ReflectedType_UField, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UPackage, &ReflectedType_UObject, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UInterface, &ReflectedType_UObject, CLASS_Abstract | CLASS_Interface)
