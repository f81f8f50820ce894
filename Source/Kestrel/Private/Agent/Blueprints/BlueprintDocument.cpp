#include "Agent/Blueprints/BlueprintDocument.h"

#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Dom/JsonObject.h"
#include "KestrelSettings.h"
#include "Misc/PackageName.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"
#include "UObject/Script.h"
#include "UObject/UnrealType.h"

namespace KestrelBlueprintDocument
{
constexpr uint64 VisiblePropertyFlags = CPF_Edit | CPF_BlueprintVisible | CPF_BlueprintReadOnly;
constexpr EFunctionFlags VisibleFunctionFlags =
	static_cast<EFunctionFlags>(FUNC_BlueprintCallable | FUNC_BlueprintEvent | FUNC_BlueprintPure);

bool PassesFilter(bool bVisible, const UClass* Owner)
{
	const UKestrelSettings* Settings = GetDefault<UKestrelSettings>();
	check(Settings);
	switch (Settings->BlueprintContentFilter)
	{
	case EKestrelBlueprintContentFilter::UseAllContent:
		return true;
	case EKestrelBlueprintContentFilter::UseOnlyBlueprintClassContent:
		return bVisible && Owner && Owner->HasAnyClassFlags(CLASS_CompiledFromBlueprint);
	default:
		return bVisible;
	}
}
}

TSharedRef<FJsonObject> KestrelBlueprintDocument::MakeError(const FString& Message)
{
	const TSharedRef<FJsonObject> Document = MakeShared<FJsonObject>();
	Document->SetStringField(TEXT("Error"), Message);
	return Document;
}

bool KestrelBlueprintDocument::IsWanted(const FProperty& Property)
{
	return PassesFilter(Property.HasAnyPropertyFlags(VisiblePropertyFlags), Property.GetOwnerClass());
}

bool KestrelBlueprintDocument::IsWanted(const UFunction& Function)
{
	return PassesFilter(Function.HasAnyFunctionFlags(VisibleFunctionFlags), Function.GetOwnerClass());
}

TSharedRef<FJsonObject> KestrelBlueprintDocument::DescribeVariable(const void* Container, const FProperty& Property)
{
	const TSharedRef<FJsonObject> Variable = MakeShared<FJsonObject>();
	Variable->SetObjectField(TEXT("Type"), FKestrelBlueprintUtils::GetVarJSonObjectFromProperty(&Property));
	Variable->SetStringField(TEXT("Value"), FKestrelBlueprintUtils::GetPropertyValueAsString(Container, &Property));
	return Variable;
}

TSharedRef<FJsonObject> KestrelBlueprintDocument::DescribeVariables(const UObject& Container)
{
	const TSharedRef<FJsonObject> Variables = MakeShared<FJsonObject>();
	for (TFieldIterator<FProperty> It(Container.GetClass()); It; ++It)
	{
		if (IsWanted(**It))
		{
			Variables->SetObjectField(It->GetName(), DescribeVariable(&Container, **It));
		}
	}
	return Variables;
}

bool KestrelBlueprintDocument::FitsName(const FString& Text)
{
	return !Text.IsEmpty() && Text.Len() < NAME_SIZE;
}

bool KestrelBlueprintDocument::CanBeLoaded(const FString& ObjectPath)
{
	return FitsName(ObjectPath) &&
		   FPackageName::IsValidLongPackageName(FPackageName::ObjectPathToPackageName(ObjectPath));
}

FName KestrelBlueprintDocument::ToName(const FString& Text)
{
	return FitsName(Text) ? FName(*Text) : FName();
}
