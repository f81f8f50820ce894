#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "UObject/EnumProperty.h"
#include "UObject/TextProperty.h"
#include "UObject/UnrealType.h"

#define LOCTEXT_NAMESPACE "KismetSchema"

namespace PinTypes
{
using FSchema = UEdGraphSchema_K2;

struct FPlainKind
{
	const FFieldClass* Class;
	FName Category;
	FName SubCategory;
};

/** The kinds that their class alone tells about. */
const TArray<FPlainKind>& GetPlainKinds()
{
	static const TArray<FPlainKind> Kinds = {
		{ FBoolProperty::StaticClass(), FSchema::PC_Boolean, NAME_None },
		{ FInt64Property::StaticClass(), FSchema::PC_Int64, NAME_None },
		{ FFloatProperty::StaticClass(), FSchema::PC_Real, FSchema::PC_Float },
		{ FDoubleProperty::StaticClass(), FSchema::PC_Real, FSchema::PC_Double },
		{ FNameProperty::StaticClass(), FSchema::PC_Name, NAME_None },
		{ FStrProperty::StaticClass(), FSchema::PC_String, NAME_None },
		{ FTextProperty::StaticClass(), FSchema::PC_Text, NAME_None },
	};
	return Kinds;
}

void Set(FEdGraphPinType& Type, FName Category, UObject* Object, FName SubCategory = NAME_None)
{
	Type.PinCategory = Category;
	Type.PinSubCategory = SubCategory;
	Type.PinSubCategoryObject = Object;
}

bool ConvertEnum(const FEnumProperty& Property, FEdGraphPinType& Type)
{
	if (CastField<FByteProperty>(Property.GetUnderlyingProperty()))
	{
		Set(Type, FSchema::PC_Byte, Property.GetEnum());
		return true;
	}
	Set(Type, FName(*(TEXT("unsupported_enum_type: ") + Property.GetCPPType())), nullptr);
	return false;
}

void SetSignature(FEdGraphPinType& Type, FName Category, const UFunction* Signature)
{
	Set(Type, Category, nullptr);
	if (Signature)
	{
		Type.PinSubCategoryMemberReference.MemberParent = Signature->GetOuter();
		Type.PinSubCategoryMemberReference.MemberName = Signature->GetFName();
	}
}

/** References: a class of properties before the class that it is a child of. */
bool ConvertReference(const FProperty& Property, FEdGraphPinType& Type)
{
	if (const FInterfaceProperty* const Interface = CastField<FInterfaceProperty>(&Property))
	{
		Set(Type, FSchema::PC_Interface, Interface->InterfaceClass);
	}
	else if (const FClassProperty* const Class = CastField<FClassProperty>(&Property))
	{
		Set(Type, FSchema::PC_Class, Class->MetaClass);
	}
	else if (const FSoftClassProperty* const SoftClass = CastField<FSoftClassProperty>(&Property))
	{
		Set(Type, FSchema::PC_SoftClass, SoftClass->MetaClass);
	}
	else if (const FSoftObjectProperty* const SoftObject = CastField<FSoftObjectProperty>(&Property))
	{
		Set(Type, FSchema::PC_SoftObject, SoftObject->PropertyClass);
	}
	else if (const FObjectPropertyBase* const Object = CastField<FObjectPropertyBase>(&Property))
	{
		Set(Type, FSchema::PC_Object, Object->PropertyClass);
		Type.bIsWeakPointer = CastField<FWeakObjectProperty>(&Property) != nullptr;
	}
	else
	{
		return false;
	}
	return true;
}

bool ConvertElement(const FProperty& Property, FEdGraphPinType& Type)
{
	for (const FPlainKind& Kind : GetPlainKinds())
	{
		if (Property.IsA(Kind.Class))
		{
			Set(Type, Kind.Category, nullptr, Kind.SubCategory);
			return true;
		}
	}
	if (CastField<FIntProperty>(&Property))
	{
		const bool bBitmask = Property.HasMetaData(FBlueprintMetadata::MD_Bitmask);
		Set(Type, FSchema::PC_Int, nullptr, bBitmask ? FSchema::PSC_Bitmask : FName());
		return true;
	}
	if (const FByteProperty* const Byte = CastField<FByteProperty>(&Property))
	{
		Set(Type, FSchema::PC_Byte, Byte->Enum);
		return true;
	}
	if (const FEnumProperty* const Enum = CastField<FEnumProperty>(&Property))
	{
		return ConvertEnum(*Enum, Type);
	}
	if (const FStructProperty* const Struct = CastField<FStructProperty>(&Property))
	{
		Set(Type, FSchema::PC_Struct, Struct->Struct);
		return true;
	}
	if (const FDelegateProperty* const Delegate = CastField<FDelegateProperty>(&Property))
	{
		SetSignature(Type, FSchema::PC_Delegate, Delegate->SignatureFunction);
		return true;
	}
	if (const FMulticastDelegateProperty* const Multicast = CastField<FMulticastDelegateProperty>(&Property))
	{
		SetSignature(Type, FSchema::PC_MCDelegate, Multicast->SignatureFunction);
		return true;
	}
	if (ConvertReference(Property, Type))
	{
		return true;
	}
	Set(Type, TEXT("bad_type"), nullptr);
	return false;
}

bool ConvertMap(const FMapProperty& Map, FEdGraphPinType& Type)
{
	FEdGraphPinType ValueType;
	const bool bValue = ConvertElement(*Map.ValueProp, ValueType);
	const bool bKey = ConvertElement(*Map.KeyProp, Type);
	Type.PinValueType = FEdGraphTerminalType::FromPinType(ValueType);
	Type.PinValueType.bTerminalIsUObjectWrapper = Map.ValueProp->HasAnyPropertyFlags(CPF_UObjectWrapper);
	Type.ContainerType = EPinContainerType::Map;
	return bKey && bValue;
}

/** Whether one class is found where the other is asked for; a skeleton stands for what it is the skeleton of. */
bool IsClassCompatible(const UObject* OutputObject, const UObject* InputObject)
{
	const UClass* Output = Cast<UClass>(OutputObject);
	const UClass* Input = Cast<UClass>(InputObject);
	if (!Output || !Input)
	{
		return Output == Input || !Input;
	}
	const UBlueprint* const InputBlueprint = UBlueprint::GetBlueprintFromClass(Input);
	for (const UClass* Class = Output; Class; Class = Class->GetSuperClass())
	{
		if (Class == Input || (InputBlueprint && UBlueprint::GetBlueprintFromClass(Class) == InputBlueprint))
		{
			return true;
		}
	}
	return Input->HasAnyClassFlags(CLASS_Interface) && Output->ImplementsInterface(Input);
}

const UObject* GetClassOf(const FEdGraphPinType& Type, const UClass* CallingContext)
{
	return Type.PinSubCategory == FSchema::PSC_Self ? CallingContext : Type.PinSubCategoryObject.Get();
}

bool IsObjectCategory(FName Category)
{
	return Category == FSchema::PC_Object || Category == FSchema::PC_Interface || Category == FSchema::PC_Class ||
		   Category == FSchema::PC_SoftObject || Category == FSchema::PC_SoftClass;
}
}

bool UEdGraphSchema_K2::ConvertPropertyToPinType(const FProperty* Property, FEdGraphPinType& TypeOut) const
{
	if (!Property)
	{
		return false;
	}
	TypeOut = FEdGraphPinType();
	const FProperty* Element = Property;
	bool bConverted = false;
	if (const FMapProperty* const Map = CastField<FMapProperty>(Property))
	{
		Element = Map->KeyProp;
		bConverted = PinTypes::ConvertMap(*Map, TypeOut);
	}
	else
	{
		const FArrayProperty* const Array = CastField<FArrayProperty>(Property);
		const FSetProperty* const Set = CastField<FSetProperty>(Property);
		Element = Array ? Array->Inner : Set ? Set->ElementProp : Property;
		bConverted = PinTypes::ConvertElement(*Element, TypeOut);
		TypeOut.ContainerType = Array ? EPinContainerType::Array
								: Set ? EPinContainerType::Set
									  : EPinContainerType::None;
	}
	TypeOut.bIsReference = Property->HasAllPropertyFlags(CPF_OutParm | CPF_ReferenceParm);
	TypeOut.bIsConst = Property->HasAnyPropertyFlags(CPF_ConstParm);
	TypeOut.bIsUObjectWrapper = Element->HasAnyPropertyFlags(CPF_UObjectWrapper);
	return bConverted;
}

bool UEdGraphSchema_K2::ArePinTypesCompatible(
	const FEdGraphPinType& Output, const FEdGraphPinType& Input, const UClass* CallingContext, bool bIgnoreArray) const
{
	if (!bIgnoreArray && Output.ContainerType != Input.ContainerType && Input.PinCategory != PC_Wildcard)
	{
		return false;
	}
	if (Output.PinCategory == PC_Wildcard || Input.PinCategory == PC_Wildcard)
	{
		return Output.PinCategory != PC_Exec && Input.PinCategory != PC_Exec;
	}
	if (Output.IsMap() && Input.IsMap() &&
		!ArePinTypesCompatible(FEdGraphPinType::GetPinTypeForTerminalType(Output.PinValueType),
			FEdGraphPinType::GetPinTypeForTerminalType(Input.PinValueType), CallingContext))
	{
		return false;
	}
	if (Output.PinCategory != Input.PinCategory)
	{
		const bool bObjectToInterface = Output.PinCategory == PC_Object && Input.PinCategory == PC_Interface;
		// What implements an interface can be any object.
		const bool bInterfaceToObject = Output.PinCategory == PC_Interface && Input.PinCategory == PC_Object &&
										PinTypes::GetClassOf(Input, CallingContext) == UObject::StaticClass();
		return bInterfaceToObject ||
			   (bObjectToInterface && PinTypes::IsClassCompatible(PinTypes::GetClassOf(Output, CallingContext),
										  PinTypes::GetClassOf(Input, CallingContext)));
	}
	if (PinTypes::IsObjectCategory(Output.PinCategory))
	{
		return PinTypes::IsClassCompatible(
			PinTypes::GetClassOf(Output, CallingContext), PinTypes::GetClassOf(Input, CallingContext));
	}
	if (Output.PinCategory == PC_Byte)
	{
		// An enum goes into a plain byte, not the other way round.
		return !Input.PinSubCategoryObject.Get() || Output.PinSubCategoryObject == Input.PinSubCategoryObject;
	}
	if (Output.PinCategory == PC_Struct)
	{
		return Output.PinSubCategoryObject == Input.PinSubCategoryObject;
	}
	return Output.PinSubCategory == Input.PinSubCategory || Output.PinCategory == PC_Real ||
		   Output.PinCategory == PC_Int || Output.PinCategory == PC_Delegate;
}

namespace PinTypes
{
FText GetCategoryText(FName Category, FName SubCategory, const UObject* Object)
{
	static const TMap<FName, FText> Names = {
		{ FSchema::PC_Exec, LOCTEXT("Exec", "Exec") },
		{ FSchema::PC_Boolean, LOCTEXT("BoolCategory", "Boolean") },
		{ FSchema::PC_Byte, LOCTEXT("ByteCategory", "Byte") },
		{ FSchema::PC_Int, LOCTEXT("IntCategory", "Integer") },
		{ FSchema::PC_Int64, LOCTEXT("Int64Category", "Integer64") },
		{ FSchema::PC_Real, LOCTEXT("RealCategory", "Float") },
		{ FSchema::PC_Name, LOCTEXT("NameCategory", "Name") },
		{ FSchema::PC_String, LOCTEXT("StringCategory", "String") },
		{ FSchema::PC_Text, LOCTEXT("TextCategory", "Text") },
		{ FSchema::PC_Delegate, LOCTEXT("DelegateCategory", "Delegate") },
		{ FSchema::PC_MCDelegate, LOCTEXT("MulticastDelegateCategory", "Event Dispatcher") },
		{ FSchema::PC_Wildcard, LOCTEXT("WildcardCategory", "Wildcard") },
	};
	static const TMap<FName, FText> References = {
		{ FSchema::PC_Object, LOCTEXT("ObjectReference", "{0} Object Reference") },
		{ FSchema::PC_Class, LOCTEXT("ClassReference", "{0} Class Reference") },
		{ FSchema::PC_SoftObject, LOCTEXT("SoftObjectReference", "{0} Soft Object Reference") },
		{ FSchema::PC_SoftClass, LOCTEXT("SoftClassReference", "{0} Soft Class Reference") },
		{ FSchema::PC_Interface, LOCTEXT("InterfaceReference", "{0} Interface") },
	};
	const UField* const Field = Cast<UField>(Object);
	if (const FText* const Reference = References.Find(Category))
	{
		const FText Name = SubCategory == FSchema::PSC_Self ? LOCTEXT("Self", "Self")
						   : Field                          ? Field->GetDisplayNameText()
															: LOCTEXT("Unknown", "Unknown");
		return FText::Format(*Reference, Name);
	}
	if (Field && (Category == FSchema::PC_Struct || Category == FSchema::PC_Byte))
	{
		return Field->GetDisplayNameText();
	}
	const FText* const Name = Names.Find(Category);
	return Name ? *Name : FText::FromName(Category);
}
}

FText UEdGraphSchema_K2::TypeToText(const FEdGraphPinType& Type)
{
	const FText Element =
		PinTypes::GetCategoryText(Type.PinCategory, Type.PinSubCategory, Type.PinSubCategoryObject.Get());
	switch (Type.ContainerType)
	{
	case EPinContainerType::Array:
		return FText::Format(LOCTEXT("ArrayAsText", "Array of {0}s"), Element);
	case EPinContainerType::Set:
		return FText::Format(LOCTEXT("SetAsText", "Set of {0}s"), Element);
	case EPinContainerType::Map:
		return FText::Format(LOCTEXT("MapAsText", "Map of {0}s to {1}s"), Element,
			PinTypes::GetCategoryText(Type.PinValueType.TerminalCategory, Type.PinValueType.TerminalSubCategory,
				Type.PinValueType.TerminalSubCategoryObject.Get()));
	default:
		return Element;
	}
}

#undef LOCTEXT_NAMESPACE
