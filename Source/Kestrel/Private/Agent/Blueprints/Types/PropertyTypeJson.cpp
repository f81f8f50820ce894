#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Blueprints/Types/TypeLookup.h"
#include "Dom/JsonObject.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/Interface.h"

namespace PropertyTypeJson
{
using FSchema = UEdGraphSchema_K2;

/** What a kind of property needs beside its name. */
enum class ENeeds : uint8
{
	Nothing,
	Enum,
	Struct,
	ObjectClass, // of which the pin is another one when it is an interface
	Class,
};

struct FKind
{
	const TCHAR* Name;
	FName Category;
	FName SubCategory = NAME_None;
	ENeeds Needs = ENeeds::Nothing;
};

/** Single precision is never made: Blueprints compute in double precision. */
const TArray<FKind>& GetKinds()
{
	static const TArray<FKind> Kinds = {
		{ TEXT("BoolProperty"), FSchema::PC_Boolean },
		{ TEXT("ByteProperty"), FSchema::PC_Byte },
		{ TEXT("IntProperty"), FSchema::PC_Int },
		{ TEXT("Int64Property"), FSchema::PC_Int64 },
		{ TEXT("FloatProperty"), FSchema::PC_Real, FSchema::PC_Double },
		{ TEXT("DoubleProperty"), FSchema::PC_Real, FSchema::PC_Double },
		{ TEXT("NameProperty"), FSchema::PC_Name },
		{ TEXT("StrProperty"), FSchema::PC_String },
		{ TEXT("TextProperty"), FSchema::PC_Text },
		{ TEXT("EnumProperty"), FSchema::PC_Byte, NAME_None, ENeeds::Enum },
		{ TEXT("StructProperty"), FSchema::PC_Struct, NAME_None, ENeeds::Struct },
		{ TEXT("ObjectProperty"), FSchema::PC_Object, NAME_None, ENeeds::ObjectClass },
		{ TEXT("SoftObjectProperty"), FSchema::PC_SoftObject, NAME_None, ENeeds::Class },
		{ TEXT("ClassProperty"), FSchema::PC_Class, NAME_None, ENeeds::Class },
		{ TEXT("SoftClassProperty"), FSchema::PC_SoftClass, NAME_None, ENeeds::Class },
	};
	return Kinds;
}

UObject* FindSubCategoryObject(const FJsonObject& Description, ENeeds Needs)
{
	FString Name;
	switch (Needs)
	{
	case ENeeds::Enum:
		return Description.TryGetStringField(TEXT("EnumType"), Name) ? KestrelTypeLookup::FindEnum(Name) : nullptr;
	case ENeeds::Struct:
		return Description.TryGetStringField(TEXT("StructType"), Name) ? KestrelTypeLookup::FindStruct(Name) : nullptr;
	case ENeeds::ObjectClass:
	case ENeeds::Class:
		return Description.TryGetStringField(TEXT("PropertyClass"), Name) ? KestrelTypeLookup::FindClass(Name)
																		  : nullptr;
	default:
		return nullptr;
	}
}

FEdGraphPinType MakePinType(const FJsonObject& Description, const FKind& Kind)
{
	FEdGraphPinType PinType;
	UObject* Object = FindSubCategoryObject(Description, Kind.Needs);
	const UClass* Class = Cast<UClass>(Object);
	const bool bInterface = Kind.Needs == ENeeds::ObjectClass && Class && Class->IsChildOf(UInterface::StaticClass());
	PinType.PinCategory = bInterface ? FSchema::PC_Interface : Kind.Category;
	PinType.PinSubCategory = Kind.SubCategory;
	PinType.PinSubCategoryObject = Object;
	return PinType;
}

FEdGraphPinType ReadElement(const FJsonObject& Description, const FString& TypeName)
{
	for (const FKind& Kind : GetKinds())
	{
		if (TypeName.Equals(Kind.Name, ESearchCase::IgnoreCase))
		{
			return MakePinType(Description, Kind);
		}
	}
	return FEdGraphPinType();
}
}

FEdGraphPinType FKestrelBlueprintUtils::GetVarEdGraphPinTypeFromJSonObject(const TSharedPtr<FJsonObject>* JsonObject)
{
	FString TypeName;
	if (!JsonObject || !JsonObject->IsValid() || !(*JsonObject)->TryGetStringField(TEXT("Type"), TypeName))
	{
		return FEdGraphPinType();
	}
	if (!TypeName.Equals(TEXT("ArrayProperty"), ESearchCase::IgnoreCase))
	{
		return PropertyTypeJson::ReadElement(**JsonObject, TypeName);
	}
	// As deep as the parser lets documents be, which is not deep.
	const TSharedPtr<FJsonObject>* InnerType = nullptr;
	if (!(*JsonObject)->TryGetObjectField(TEXT("InnerType"), InnerType))
	{
		return FEdGraphPinType();
	}
	FEdGraphPinType PinType = GetVarEdGraphPinTypeFromJSonObject(InnerType);
	PinType.ContainerType = EPinContainerType::Array;
	return PinType;
}
