#include "Compiler/PropertyFromPinType.h"

#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "UObject/EnumProperty.h"
#include "UObject/Interface.h"
#include "UObject/TextProperty.h"
#include "UObject/UnrealType.h"

namespace PropertyFromPinType
{
using FSchema = UEdGraphSchema_K2;

template <typename PropertyType>
PropertyType* Make(FFieldVariant Owner, FName Name)
{
	return new PropertyType(Owner, Name, RF_Public);
}

/** The class to look for in memory: what a Blueprint was compiled to, even if the type names its skeleton. */
UClass* GetAuthoritativeClass(UObject* Object)
{
	UClass* const Class = Cast<UClass>(Object);
	const UBlueprint* const Blueprint = UBlueprint::GetBlueprintFromClass(Class);
	return Blueprint && Blueprint->GeneratedClass ? Blueprint->GeneratedClass.Get() : Class;
}

/** The class that "self" is, in a class's member or a function's parameter. */
UClass* GetSelfClass(FFieldVariant Owner)
{
	for (FField* Field = Owner.ToField(); Field; Field = Owner.ToField())
	{
		Owner = Field->GetOwnerVariant();
	}
	UObject* Object = Owner.ToUObject();
	while (Object && !Object->IsA<UClass>())
	{
		Object = Object->GetOuter();
	}
	return GetAuthoritativeClass(Object);
}

FProperty* MakeReference(FFieldVariant Owner, FName Name, const FEdGraphTerminalType& Type, UClass* Class)
{
	const FName Category = Type.TerminalCategory;
	if (Category == FSchema::PC_Interface)
	{
		FInterfaceProperty* const Property = Make<FInterfaceProperty>(Owner, Name);
		Property->SetInterfaceClass(Class);
		return Property;
	}
	if (Category == FSchema::PC_Class)
	{
		FClassProperty* const Property = Make<FClassProperty>(Owner, Name);
		Property->MetaClass = Class;
		Property->SetPropertyFlags(CPF_UObjectWrapper);
		return Property;
	}
	if (Category == FSchema::PC_SoftClass)
	{
		FSoftClassProperty* const Property = Make<FSoftClassProperty>(Owner, Name);
		Property->MetaClass = Class;
		return Property;
	}
	FObjectPropertyBase* Property = nullptr;
	if (Category == FSchema::PC_SoftObject)
	{
		Property = Make<FSoftObjectProperty>(Owner, Name);
	}
	else if (Type.bTerminalIsWeakPointer)
	{
		Property = Make<FWeakObjectProperty>(Owner, Name);
	}
	else
	{
		Property = Make<FObjectProperty>(Owner, Name);
	}
	Property->SetPropertyClass(Class);
	return Property;
}

bool IsReference(FName Category)
{
	return Category == FSchema::PC_Object || Category == FSchema::PC_Interface || Category == FSchema::PC_Class ||
		   Category == FSchema::PC_SoftObject || Category == FSchema::PC_SoftClass;
}

FProperty* MakeByte(FFieldVariant Owner, FName Name, UEnum* Enum)
{
	if (!Enum || Enum->GetCppForm() != UEnum::ECppForm::EnumClass)
	{
		FByteProperty* const Property = Make<FByteProperty>(Owner, Name);
		Property->Enum = Enum;
		return Property;
	}
	FEnumProperty* const Property = Make<FEnumProperty>(Owner, Name);
	Property->SetEnum(Enum);
	Property->AddCppProperty(Make<FByteProperty>(Property, TEXT("UnderlyingType")));
	return Property;
}

using FMake = FProperty* (*)(FFieldVariant Owner, FName Name);

struct FPlainKind
{
	FName Category;
	FName SubCategory; // None: whatever it is
	FMake Make;
};

template <typename PropertyType>
FProperty* MakePlain(FFieldVariant Owner, FName Name)
{
	return Make<PropertyType>(Owner, Name);
}

FProperty* MakeBool(FFieldVariant Owner, FName Name)
{
	FBoolProperty* const Property = Make<FBoolProperty>(Owner, Name);
	Property->SetBoolSize(sizeof(bool), true);
	return Property;
}

const TArray<FPlainKind>& GetPlainKinds()
{
	static const TArray<FPlainKind> Kinds = {
		{ FSchema::PC_Boolean, NAME_None, &MakeBool },
		{ FSchema::PC_Int, NAME_None, &MakePlain<FIntProperty> },
		{ FSchema::PC_Int64, NAME_None, &MakePlain<FInt64Property> },
		{ FSchema::PC_Real, FSchema::PC_Float, &MakePlain<FFloatProperty> },
		{ FSchema::PC_Real, NAME_None, &MakePlain<FDoubleProperty> },
		{ FSchema::PC_Float, NAME_None, &MakePlain<FFloatProperty> },
		{ FSchema::PC_Double, NAME_None, &MakePlain<FDoubleProperty> },
		{ FSchema::PC_Name, NAME_None, &MakePlain<FNameProperty> },
		{ FSchema::PC_String, NAME_None, &MakePlain<FStrProperty> },
		{ FSchema::PC_Text, NAME_None, &MakePlain<FTextProperty> },
	};
	return Kinds;
}

/** Signatures are those of delegates that native classes declare. */
FProperty* MakeDelegate(FFieldVariant Owner, FName Name, const FEdGraphPinType& Type)
{
	const UObject* const Parent = Type.PinSubCategoryMemberReference.MemberParent;
	UFunction* const Signature =
		Parent ? FindObjectFast<UFunction>(const_cast<UObject*>(Parent), Type.PinSubCategoryMemberReference.MemberName)
			   : nullptr;
	if (!Signature)
	{
		return nullptr;
	}
	if (Type.PinCategory == FSchema::PC_Delegate)
	{
		FDelegateProperty* const Property = Make<FDelegateProperty>(Owner, Name);
		Property->SignatureFunction = Signature;
		return Property;
	}
	FMulticastInlineDelegateProperty* const Property = Make<FMulticastInlineDelegateProperty>(Owner, Name);
	Property->SignatureFunction = Signature;
	return Property;
}

FProperty* MakeElement(FFieldVariant Owner, FName Name, const FEdGraphTerminalType& Type)
{
	UObject* const Object = Type.TerminalSubCategoryObject.Get();
	for (const FPlainKind& Kind : GetPlainKinds())
	{
		if (Kind.Category == Type.TerminalCategory &&
			(Kind.SubCategory.IsNone() || Kind.SubCategory == Type.TerminalSubCategory))
		{
			return Kind.Make(Owner, Name);
		}
	}
	if (Type.TerminalCategory == FSchema::PC_Byte)
	{
		return MakeByte(Owner, Name, Cast<UEnum>(Object));
	}
	if (Type.TerminalCategory == FSchema::PC_Struct)
	{
		UScriptStruct* const Struct = Cast<UScriptStruct>(Object);
		FStructProperty* const Property = Struct ? Make<FStructProperty>(Owner, Name) : nullptr;
		if (Property)
		{
			Property->Struct = Struct;
			Property->LinkInternal();
		}
		return Property;
	}
	if (!IsReference(Type.TerminalCategory))
	{
		return nullptr;
	}
	UClass* const Class =
		Type.TerminalSubCategory == FSchema::PSC_Self ? GetSelfClass(Owner) : GetAuthoritativeClass(Object);
	const bool bFits =
		Class && (Type.TerminalCategory != FSchema::PC_Interface || Class->HasAnyClassFlags(CLASS_Interface));
	return bFits ? MakeReference(Owner, Name, Type, Class) : nullptr;
}

/** Elements of sets and keys of maps are found by their hash. */
bool HasHash(const FProperty& Property)
{
	const FStructProperty* const Struct = CastField<FStructProperty>(&Property);
	return Struct ? Struct->Struct->CanHash() : Property.HasAnyPropertyFlags(CPF_HasGetValueTypeHash);
}

FProperty* MakeMap(UStruct& Scope, FName Name, const FEdGraphTerminalType& Key, const FEdGraphTerminalType& Value)
{
	FMapProperty* const Map = Make<FMapProperty>(&Scope, Name);
	Map->KeyProp = MakeElement(Map, Name, Key);
	Map->ValueProp = MakeElement(Map, Name, Value);
	if (!Map->KeyProp || !Map->ValueProp || !HasHash(*Map->KeyProp))
	{
		delete Map;
		return nullptr;
	}
	return Map;
}

template <typename ContainerType>
FProperty* MakeContainer(
	UStruct& Scope, FName Name, const FEdGraphTerminalType& Element, FProperty* ContainerType::*Member, bool bNeedsHash)
{
	ContainerType* const Container = Make<ContainerType>(&Scope, Name);
	Container->*Member = MakeElement(Container, Name, Element);
	if (!(Container->*Member) || (bNeedsHash && !HasHash(*(Container->*Member))))
	{
		delete Container;
		return nullptr;
	}
	return Container;
}
}

FProperty* CreatePropertyFromPinType(UStruct& Scope, FName Name, const FEdGraphPinType& Type)
{
	if (Type.PinCategory == UEdGraphSchema_K2::PC_Delegate || Type.PinCategory == UEdGraphSchema_K2::PC_MCDelegate)
	{
		return PropertyFromPinType::MakeDelegate(&Scope, Name, Type);
	}
	const FEdGraphTerminalType Element = FEdGraphTerminalType::FromPinType(Type);
	switch (Type.ContainerType)
	{
	case EPinContainerType::Array:
		return PropertyFromPinType::MakeContainer(Scope, Name, Element, &FArrayProperty::Inner, false);
	case EPinContainerType::Set:
		return PropertyFromPinType::MakeContainer(Scope, Name, Element, &FSetProperty::ElementProp, true);
	case EPinContainerType::Map:
		return PropertyFromPinType::MakeMap(Scope, Name, Element, Type.PinValueType);
	default:
		return PropertyFromPinType::MakeElement(&Scope, Name, Element);
	}
}
