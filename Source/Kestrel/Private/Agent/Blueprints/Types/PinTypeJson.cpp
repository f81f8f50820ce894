#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Blueprints/Types/TypeLookup.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "UObject/Class.h"
#include "UObject/UnrealType.h"
#include "UObject/WeakObjectPtrTemplates.h"

namespace PinTypeJson
{
/** Names and containers, in the order in which they are compared. */
struct FContainerName
{
	const TCHAR* Name;
	EPinContainerType Type;
};

const FContainerName ContainerNames[] = {
	{ TEXT("Array"), EPinContainerType::Array },
	{ TEXT("Set"), EPinContainerType::Set },
	{ TEXT("Map"), EPinContainerType::Map },
};

const TCHAR* GetContainerName(EPinContainerType Type)
{
	for (const FContainerName& Container : ContainerNames)
	{
		if (Container.Type == Type)
		{
			return Container.Name;
		}
	}
	return TEXT("None");
}

/** Bit fields cannot be pointed at. */
struct FFlag
{
	const TCHAR* Name;
	bool (*Get)(const FEdGraphPinType& PinType);
	void (*Set)(FEdGraphPinType& PinType, bool bValue);
};

const FFlag Flags[] = {
	{ TEXT("Reference"), [](const FEdGraphPinType& Type) { return !!Type.bIsReference; },
		[](FEdGraphPinType& Type, bool bValue) { Type.bIsReference = bValue; } },
	{ TEXT("Const"), [](const FEdGraphPinType& Type) { return !!Type.bIsConst; },
		[](FEdGraphPinType& Type, bool bValue) { Type.bIsConst = bValue; } },
	{ TEXT("Weak"), [](const FEdGraphPinType& Type) { return !!Type.bIsWeakPointer; },
		[](FEdGraphPinType& Type, bool bValue) { Type.bIsWeakPointer = bValue; } },
	{ TEXT("UObjectWrapper"), [](const FEdGraphPinType& Type) { return !!Type.bIsUObjectWrapper; },
		[](FEdGraphPinType& Type, bool bValue) { Type.bIsUObjectWrapper = bValue; } },
};

/** A category that is not set reads as "None" when printed, and is empty in the document. */
FString ToText(FName Category)
{
	return Category.IsNone() ? FString() : Category.ToString();
}

void AddTerminal(
	FJsonObject& Object, FName Category, FName SubCategory, const TWeakObjectPtr<UObject>& SubCategoryObject)
{
	Object.SetStringField(TEXT("Category"), ToText(Category));
	Object.SetStringField(TEXT("SubCategory"), ToText(SubCategory));
	if (SubCategoryObject.IsValid())
	{
		Object.SetStringField(TEXT("SubCategoryObject"), SubCategoryObject->GetPathName());
	}
}

void ReadName(const FJsonObject& Object, const TCHAR* Field, FName& OutName)
{
	FString Text;
	if (Object.TryGetStringField(Field, Text))
	{
		OutName = KestrelBlueprintDocument::ToName(Text);
	}
}

void ReadTerminal(
	const FJsonObject& Object, FName& Category, FName& SubCategory, TWeakObjectPtr<UObject>& SubCategoryObject)
{
	ReadName(Object, TEXT("Category"), Category);
	ReadName(Object, TEXT("SubCategory"), SubCategory);
	FString Path;
	if (Object.TryGetStringField(TEXT("SubCategoryObject"), Path))
	{
		SubCategoryObject = KestrelTypeLookup::FindForCategory(Category, Path);
	}
	if (Category == UEdGraphSchema_K2::PC_Real && SubCategory.IsNone())
	{
		SubCategory = UEdGraphSchema_K2::PC_Double; // what Blueprints compute in
	}
}

void ReadContainer(const FJsonObject& Object, FEdGraphPinType& PinType)
{
	FString Name;
	if (!Object.TryGetStringField(TEXT("Container"), Name))
	{
		return;
	}
	for (const FContainerName& Container : ContainerNames)
	{
		if (Name.Equals(Container.Name, ESearchCase::IgnoreCase))
		{
			PinType.ContainerType = Container.Type;
		}
	}
}

void ReadFlags(const FJsonObject& Object, FEdGraphPinType& PinType)
{
	const TArray<TSharedPtr<FJsonValue>>* Values = nullptr;
	if (!Object.TryGetArrayField(TEXT("Flags"), Values))
	{
		return;
	}
	for (const TSharedPtr<FJsonValue>& Value : *Values)
	{
		FString Name;
		if (!Value.IsValid() || !Value->TryGetString(Name))
		{
			continue;
		}
		for (const FFlag& Flag : Flags)
		{
			if (Name.Equals(Flag.Name, ESearchCase::IgnoreCase))
			{
				Flag.Set(PinType, true);
			}
		}
	}
}
}

TSharedPtr<FJsonObject> FKestrelBlueprintUtils::ConvertEdGraphPinTypeToJson(const FEdGraphPinType& PinType)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	PinTypeJson::AddTerminal(*Object, PinType.PinCategory, PinType.PinSubCategory, PinType.PinSubCategoryObject);
	Object->SetStringField(TEXT("Container"), PinTypeJson::GetContainerName(PinType.ContainerType));
	if (PinType.IsMap())
	{
		const FEdGraphTerminalType& Value = PinType.PinValueType;
		const TSharedRef<FJsonObject> ValueType = MakeShared<FJsonObject>();
		PinTypeJson::AddTerminal(
			*ValueType, Value.TerminalCategory, Value.TerminalSubCategory, Value.TerminalSubCategoryObject);
		Object->SetObjectField(TEXT("ValueType"), ValueType);
	}
	TArray<TSharedPtr<FJsonValue>> FlagNames;
	for (const PinTypeJson::FFlag& Flag : PinTypeJson::Flags)
	{
		if (Flag.Get(PinType))
		{
			FlagNames.Add(MakeShared<FJsonValueString>(Flag.Name));
		}
	}
	Object->SetArrayField(TEXT("Flags"), FlagNames);
	return Object;
}

FEdGraphPinType FKestrelBlueprintUtils::ConvertJsonToEdGraphPinType(const TSharedPtr<FJsonObject>& JsonObject)
{
	FEdGraphPinType PinType;
	const TSharedPtr<FJsonObject>* Type = nullptr;
	if (!JsonObject.IsValid() || !JsonObject->TryGetObjectField(TEXT("Type"), Type))
	{
		return PinType;
	}
	const FJsonObject& Document = **Type;
	PinTypeJson::ReadTerminal(Document, PinType.PinCategory, PinType.PinSubCategory, PinType.PinSubCategoryObject);
	PinTypeJson::ReadContainer(Document, PinType);
	const TSharedPtr<FJsonObject>* ValueType = nullptr;
	if (PinType.IsMap() && Document.TryGetObjectField(TEXT("ValueType"), ValueType))
	{
		FEdGraphTerminalType& Value = PinType.PinValueType;
		PinTypeJson::ReadTerminal(
			**ValueType, Value.TerminalCategory, Value.TerminalSubCategory, Value.TerminalSubCategoryObject);
	}
	PinTypeJson::ReadFlags(Document, PinType);
	return PinType;
}

FEdGraphPinType FKestrelBlueprintUtils::ConvertPropertyToEdGraphPinType(const FProperty* Property)
{
	FEdGraphPinType PinType;
	if (Property)
	{
		GetDefault<UEdGraphSchema_K2>()->ConvertPropertyToPinType(Property, PinType);
	}
	return PinType;
}

TSharedPtr<FJsonObject> FKestrelBlueprintUtils::GetVarJSonObjectFromProperty(const FProperty* Property)
{
	return ConvertEdGraphPinTypeToJson(ConvertPropertyToEdGraphPinType(Property));
}
