#include "BlueprintEditorLibrary.h"

#include "AssetToolsModule.h"
#include "EdGraphSchema_K2.h"
#include "Factories/BlueprintFactory.h"
#include "IAssetTools.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Misc/PackageName.h"
#include "Modules/ModuleManager.h"

DEFINE_LOG_CATEGORY_STATIC(LogBlueprintEditorLib, Log, All);

namespace BlueprintEditorLibrary
{
bool IsThere(const UBlueprint* Blueprint)
{
	UE_CLOG(!Blueprint, LogBlueprintEditorLib, Warning, TEXT("No Blueprint was given"));
	return Blueprint != nullptr;
}

FEdGraphPinType MakeType(FName Category, const UObject* Object)
{
	return FEdGraphPinType(
		Category, NAME_None, const_cast<UObject*>(Object), EPinContainerType::None, false, FEdGraphTerminalType());
}
}

UBlueprint* UBlueprintEditorLibrary::GetBlueprintAsset(UObject* Object)
{
	return Cast<UBlueprint>(Object);
}

UClass* UBlueprintEditorLibrary::GeneratedClass(UBlueprint* BlueprintObj)
{
	return BlueprintEditorLibrary::IsThere(BlueprintObj) ? BlueprintObj->GeneratedClass.Get() : nullptr;
}

void UBlueprintEditorLibrary::CompileBlueprint(UBlueprint* Blueprint)
{
	if (BlueprintEditorLibrary::IsThere(Blueprint))
	{
		// The script may hold objects that nothing else refers to.
		FKismetEditorUtilities::CompileBlueprint(Blueprint, EBlueprintCompileOptions::SkipGarbageCollection);
	}
}

UBlueprint* UBlueprintEditorLibrary::CreateBlueprintAssetWithParent(const FString& AssetPath, UClass* ParentClass)
{
	UBlueprintFactory* const Factory = NewObject<UBlueprintFactory>();
	Factory->ParentClass = ParentClass;
	UObject* const Asset = FModuleManager::LoadModuleChecked<FAssetToolsModule>("AssetTools")
							   .Get()
							   .CreateAsset(FPackageName::GetShortName(AssetPath),
								   FPackageName::GetLongPackagePath(AssetPath), UBlueprint::StaticClass(), Factory);
	return Cast<UBlueprint>(Asset);
}

UEdGraph* UBlueprintEditorLibrary::FindEventGraph(UBlueprint* Blueprint)
{
	return BlueprintEditorLibrary::IsThere(Blueprint) ? FBlueprintEditorUtils::FindEventGraph(Blueprint) : nullptr;
}

UEdGraph* UBlueprintEditorLibrary::FindGraph(UBlueprint* Blueprint, FName GraphName)
{
	TArray<UEdGraph*> Graphs;
	if (BlueprintEditorLibrary::IsThere(Blueprint))
	{
		Blueprint->GetAllGraphs(Graphs);
	}
	UEdGraph* const* const Found =
		Graphs.FindByPredicate([GraphName](const UEdGraph* Graph) { return Graph->GetFName() == GraphName; });
	return Found ? *Found : nullptr;
}

UEdGraph* UBlueprintEditorLibrary::AddFunctionGraph(UBlueprint* Blueprint, const FString& FuncName)
{
	if (!BlueprintEditorLibrary::IsThere(Blueprint))
	{
		return nullptr;
	}
	UEdGraph* const Graph = FBlueprintEditorUtils::CreateNewGraph(Blueprint,
		FBlueprintEditorUtils::FindUniqueKismetName(Blueprint, FuncName), UEdGraph::StaticClass(),
		UEdGraphSchema_K2::StaticClass());
	FBlueprintEditorUtils::AddFunctionGraph<UClass>(Blueprint, Graph, true, nullptr);
	return Graph;
}

void UBlueprintEditorLibrary::RemoveFunctionGraph(UBlueprint* Blueprint, FName FuncName)
{
	UEdGraph* const Graph = FindGraph(Blueprint, FuncName);
	if (Graph && Blueprint->FunctionGraphs.Contains(Graph) && Graph->bAllowDeletion)
	{
		FBlueprintEditorUtils::RemoveGraph(Blueprint, Graph);
	}
}

bool UBlueprintEditorLibrary::AddMemberVariable(
	UBlueprint* Blueprint, FName MemberName, const FEdGraphPinType& VariableType)
{
	return BlueprintEditorLibrary::IsThere(Blueprint) &&
		   FBlueprintEditorUtils::AddMemberVariable(Blueprint, MemberName, VariableType);
}

void UBlueprintEditorLibrary::SetBlueprintVariableInstanceEditable(
	UBlueprint* Blueprint, const FName& VariableName, bool bInstanceEditable)
{
	if (BlueprintEditorLibrary::IsThere(Blueprint))
	{
		FBlueprintEditorUtils::SetBlueprintOnlyEditableFlag(Blueprint, VariableName, !bInstanceEditable);
	}
}

FEdGraphPinType UBlueprintEditorLibrary::GetBasicTypeByName(FName TypeName)
{
	FEdGraphPinType Type = BlueprintEditorLibrary::MakeType(TypeName, nullptr);
	if (TypeName == UEdGraphSchema_K2::PC_Real)
	{
		Type.PinSubCategory = UEdGraphSchema_K2::PC_Double;
	}
	return Type;
}

FEdGraphPinType UBlueprintEditorLibrary::GetStructType(const UScriptStruct* StructType)
{
	return BlueprintEditorLibrary::MakeType(UEdGraphSchema_K2::PC_Struct, StructType);
}

FEdGraphPinType UBlueprintEditorLibrary::GetObjectReferenceType(const UClass* ObjectType)
{
	return BlueprintEditorLibrary::MakeType(UEdGraphSchema_K2::PC_Object, ObjectType);
}

FEdGraphPinType UBlueprintEditorLibrary::GetClassReferenceType(const UClass* ClassType)
{
	return BlueprintEditorLibrary::MakeType(UEdGraphSchema_K2::PC_Class, ClassType);
}

FEdGraphPinType UBlueprintEditorLibrary::GetArrayType(const FEdGraphPinType& ContainedType)
{
	FEdGraphPinType Type = ContainedType;
	Type.ContainerType = EPinContainerType::Array;
	return Type;
}
