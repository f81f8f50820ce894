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

/** What a category cannot do without, and whether hashed containers can hold it as key. */
struct FCategory
{
	FName Name;
	const UClass* ObjectClass = nullptr; // of the sub-category object; null when none is needed
	bool bHashable = true;
};

const TArray<FCategory>& GetCategories()
{
	static const TArray<FCategory> Categories = {
		{ FSchema::PC_Boolean, nullptr, false },
		{ FSchema::PC_Byte },
		{ FSchema::PC_Int },
		{ FSchema::PC_Int64 },
		{ FSchema::PC_Real },
		{ FSchema::PC_Name },
		{ FSchema::PC_String },
		{ FSchema::PC_Text, nullptr, false },
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

const FCategory* FindUsable(FName Name, FName SubCategory, const UObject* Object)
{
	const FCategory* Category =
		GetCategories().FindByPredicate([Name](const FCategory& Known) { return Known.Name == Name; });
	if (!Category)
	{
		return nullptr;
	}
	// The compiler stops the process for a real number of no precision.
	const bool bPrecise =
		Name != FSchema::PC_Real || SubCategory == FSchema::PC_Double || SubCategory == FSchema::PC_Float;
	const bool bSelf = Name == FSchema::PC_Object && SubCategory == FSchema::PSC_Self;
	const bool bHasObject = !Category->ObjectClass || bSelf || (Object && Object->IsA(Category->ObjectClass));
	const bool bEnumOrNone = Name != FSchema::PC_Byte || !Object || Object->IsA<UEnum>();
	return bPrecise && bHasObject && bEnumOrNone ? Category : nullptr;
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
	const BlueprintMembers::FCategory* Category =
		BlueprintMembers::FindUsable(PinType.PinCategory, PinType.PinSubCategory, PinType.PinSubCategoryObject.Get());
	if (!Category || ((PinType.IsMap() || PinType.IsSet()) && !Category->bHashable))
	{
		return false;
	}
	const FEdGraphTerminalType& Value = PinType.PinValueType;
	return !PinType.IsMap() || BlueprintMembers::FindUsable(Value.TerminalCategory, Value.TerminalSubCategory,
								   Value.TerminalSubCategoryObject.Get());
}
