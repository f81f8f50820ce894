#include "Agent/BlueprintMembers.h"

#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"

namespace BlueprintMembers
{
using FSchema = UEdGraphSchema_K2;

/** What a category cannot do without. */
struct FCategory
{
	FName Name;
	const UClass* ObjectClass = nullptr; // of the sub-category object; null when none is needed
};

const TArray<FCategory>& GetCategories()
{
	static const TArray<FCategory> Categories = {
		{ FSchema::PC_Boolean },
		{ FSchema::PC_Byte },
		{ FSchema::PC_Int },
		{ FSchema::PC_Int64 },
		{ FSchema::PC_Real },
		{ FSchema::PC_Name },
		{ FSchema::PC_String },
		{ FSchema::PC_Text },
		{ FSchema::PC_FieldPath },
		{ FSchema::PC_Enum, UEnum::StaticClass() },
		{ FSchema::PC_Struct, UScriptStruct::StaticClass() },
		{ FSchema::PC_Object, UClass::StaticClass() },
		{ FSchema::PC_Interface, UClass::StaticClass() },
		{ FSchema::PC_Class, UClass::StaticClass() },
		{ FSchema::PC_SoftObject, UClass::StaticClass() },
		{ FSchema::PC_SoftClass, UClass::StaticClass() },
	};
	return Categories;
}

bool IsUsable(FName Name, FName SubCategory, const UObject* Object)
{
	const FCategory* Category =
		GetCategories().FindByPredicate([Name](const FCategory& Known) { return Known.Name == Name; });
	if (!Category)
	{
		return false;
	}
	// The compiler stops the process for a real number of no precision.
	const bool bPrecise =
		Name != FSchema::PC_Real || SubCategory == FSchema::PC_Double || SubCategory == FSchema::PC_Float;
	const bool bSelf = Name == FSchema::PC_Object && SubCategory == FSchema::PSC_Self;
	const bool bHasObject = !Category->ObjectClass || bSelf || (Object && Object->IsA(Category->ObjectClass));
	const bool bEnumOrNone = Name != FSchema::PC_Byte || !Object || Object->IsA<UEnum>();
	const UClass* Class = Cast<UClass>(Object);
	const bool bInterface = Name != FSchema::PC_Interface || (Class && Class->HasAnyClassFlags(CLASS_Interface));
	return bPrecise && bHasObject && bEnumOrNone && bInterface;
}

/** Elements of sets and keys of maps are found by their hash. */
bool CanBeKey(const FEdGraphPinType& PinType)
{
	FEdGraphPinType Key = PinType;
	Key.ContainerType = EPinContainerType::None;
	return FBlueprintEditorUtils::HasGetTypeHash(Key);
}
}

bool KestrelBlueprintMembers::CanBeName(const FString& Text)
{
	if (Text.IsEmpty() || Text.Len() > MaxNameLength || FName(*Text).IsNone() || !Text.TrimStartAndEnd().Equals(Text))
	{
		return false;
	}
	const FString WithoutBlanks = Text.Replace(TEXT(" "), TEXT("_"));
	return FName::IsValidXName(WithoutBlanks, INVALID_OBJECTNAME_CHARACTERS);
}

bool KestrelBlueprintMembers::IsNameFree(const UBlueprint& Blueprint, const FString& Name)
{
	const FName Wanted(*Name);
	const UClass* Class = Blueprint.SkeletonGeneratedClass ? Blueprint.SkeletonGeneratedClass : Blueprint.ParentClass;
	const bool bMember = Class && (Class->FindPropertyByName(Wanted) || Class->FindFunctionByName(Wanted));
	return !bMember && FBlueprintEditorUtils::FindNewVariableIndex(&Blueprint, Wanted) == INDEX_NONE &&
		   !FindObjectFast<UObject>(const_cast<UBlueprint*>(&Blueprint), Wanted);
}

bool KestrelBlueprintMembers::IsUsableType(const FEdGraphPinType& PinType)
{
	if (!BlueprintMembers::IsUsable(PinType.PinCategory, PinType.PinSubCategory, PinType.PinSubCategoryObject.Get()) ||
		((PinType.IsMap() || PinType.IsSet()) && !BlueprintMembers::CanBeKey(PinType)))
	{
		return false;
	}
	const FEdGraphTerminalType& Value = PinType.PinValueType;
	return !PinType.IsMap() || BlueprintMembers::IsUsable(Value.TerminalCategory, Value.TerminalSubCategory,
								   Value.TerminalSubCategoryObject.Get());
}

void KestrelBlueprintMembers::StoreEnumsAsBytes(FEdGraphPinType& PinType)
{
	for (FName* Category : { &PinType.PinCategory, &PinType.PinValueType.TerminalCategory })
	{
		if (*Category == UEdGraphSchema_K2::PC_Enum)
		{
			*Category = UEdGraphSchema_K2::PC_Byte;
		}
	}
}
