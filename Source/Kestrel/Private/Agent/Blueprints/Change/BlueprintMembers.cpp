#include "Agent/Blueprints/Change/BlueprintMembers.h"

#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/WeakObjectPtrTemplates.h"

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

FString ListCategories()
{
	TArray<FString> Names;
	for (const FCategory& Category : GetCategories())
	{
		Names.Add(Category.Name.ToString());
	}
	return FString::Join(Names, TEXT(", "));
}

/** As FindTypeProblem, of a type without container. */
FString FindProblem(FName Name, FName SubCategory, const UObject* Object)
{
	const FCategory* Category =
		GetCategories().FindByPredicate([Name](const FCategory& Known) { return Known.Name == Name; });
	if (!Category)
	{
		return Name.IsNone() ? FString(TEXT("No type is given."))
							 : FString::Printf(
								   TEXT("There is no type '%s'. Types are: %s."), *Name.ToString(), *ListCategories());
	}
	// The compiler stops the process for a real number of no precision.
	if (Name == FSchema::PC_Real && SubCategory != FSchema::PC_Double && SubCategory != FSchema::PC_Float)
	{
		return TEXT("A real number has the sub-category 'double' or 'float'.");
	}
	const bool bSelf = Name == FSchema::PC_Object && SubCategory == FSchema::PSC_Self;
	const bool bHasObject = !Category->ObjectClass || bSelf || (Object && Object->IsA(Category->ObjectClass));
	const UClass* Class = Cast<UClass>(Object);
	if (!bHasObject || (Name == FSchema::PC_Interface && !(Class && Class->HasAnyClassFlags(CLASS_Interface))))
	{
		return FString::Printf(TEXT("The type '%s' names its %s by path or name, and none was found."),
			*Name.ToString(),
			Name == FSchema::PC_Struct      ? TEXT("struct")
			: Name == FSchema::PC_Enum      ? TEXT("enum")
			: Name == FSchema::PC_Interface ? TEXT("interface")
											: TEXT("class"));
	}
	return Name == FSchema::PC_Byte && Object && !Object->IsA<UEnum>() ? FString(TEXT("A byte can only be of an enum."))
																	   : FString();
}

/** Elements of sets and keys of maps are found by their hash. */
bool CanBeKey(const FEdGraphPinType& PinType)
{
	FEdGraphPinType Key = PinType;
	Key.ContainerType = EPinContainerType::None;
	return FBlueprintEditorUtils::HasGetTypeHash(Key);
}
}

bool KestrelBlueprintMembers::CanBeMemberName(const FString& Text)
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

FString KestrelBlueprintMembers::FindNameProblem(const UBlueprint& Blueprint, const FString& Name)
{
	if (!CanBeMemberName(Name))
	{
		return FString::Printf(
			TEXT("A name has 1 to %d letters, digits, spaces and underscores, and is not 'None'."), MaxNameLength);
	}
	return IsNameFree(Blueprint, Name)
			   ? FString()
			   : FString(TEXT("The Blueprint or one of its parents has a member of this name."));
}

FString KestrelBlueprintMembers::FindTypeProblem(const FEdGraphPinType& PinType)
{
	const FString Problem =
		BlueprintMembers::FindProblem(PinType.PinCategory, PinType.PinSubCategory, PinType.PinSubCategoryObject.Get());
	if (!Problem.IsEmpty())
	{
		return Problem;
	}
	if ((PinType.IsMap() || PinType.IsSet()) && !BlueprintMembers::CanBeKey(PinType))
	{
		return TEXT("Values of this type cannot be elements of a set or keys of a map.");
	}
	const FEdGraphTerminalType& Value = PinType.PinValueType;
	return PinType.IsMap() ? BlueprintMembers::FindProblem(Value.TerminalCategory, Value.TerminalSubCategory,
								 Value.TerminalSubCategoryObject.Get())
						   : FString();
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
