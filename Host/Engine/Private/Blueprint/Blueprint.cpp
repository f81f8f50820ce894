#include "Engine/Blueprint.h"

#include "Engine/BlueprintGeneratedClass.h"
#include "Engine/SimpleConstructionScript.h"
#include "UObject/AssetRegistryTagsContext.h"

const FName FBlueprintTags::GeneratedClassPath(TEXT("GeneratedClass"));
const FName FBlueprintTags::ParentClassPath(TEXT("ParentClass"));
const FName FBlueprintTags::NativeParentClassPath(TEXT("NativeParentClass"));
const FName FBlueprintTags::BlueprintType(TEXT("BlueprintType"));
const FName FBlueprintTags::ImplementedInterfaces(TEXT("ImplementedInterfaces"));

void (*UBlueprint::CompileOnLoad)(UBlueprint& Blueprint) = nullptr;

namespace BlueprintImpl
{
void AddWithChildren(const TArray<TObjectPtr<UEdGraph>>& List, TArray<UEdGraph*>& Graphs)
{
	for (UEdGraph* const Graph : List)
	{
		if (Graph)
		{
			Graphs.Add(Graph);
			Graph->GetAllChildrenGraphs(Graphs);
		}
	}
}

/** The nearest parent that no Blueprint was compiled to. */
const UClass* GetNativeParent(const UClass* Class)
{
	while (Class && !Class->IsNative())
	{
		Class = Class->GetSuperClass();
	}
	return Class;
}
}

const FString& FBPVariableDescription::GetMetaData(FName Key) const
{
	const int32 Index = FindMetaDataEntryIndexForKey(Key);
	checkf(Index != INDEX_NONE, TEXT("The variable %s has no metadata %s"), *VarName.ToString(), *Key.ToString());
	return MetaDataArray[Index].DataValue;
}

void FBPVariableDescription::SetMetaData(FName Key, FString Value)
{
	const int32 Index = FindMetaDataEntryIndexForKey(Key);
	if (Index == INDEX_NONE)
	{
		MetaDataArray.Emplace(Key, MoveTemp(Value));
		return;
	}
	MetaDataArray[Index].DataValue = MoveTemp(Value);
}

void FBPVariableDescription::RemoveMetaData(FName Key)
{
	const int32 Index = FindMetaDataEntryIndexForKey(Key);
	if (Index != INDEX_NONE)
	{
		MetaDataArray.RemoveAt(Index);
	}
}

int32 FBPVariableDescription::FindMetaDataEntryIndexForKey(FName Key) const
{
	return MetaDataArray.IndexOfByPredicate(
		[Key](const FBPVariableMetaDataEntry& Entry) { return Entry.DataKey == Key; });
}

void UBlueprint::GetAllGraphs(TArray<UEdGraph*>& Graphs) const
{
	BlueprintImpl::AddWithChildren(FunctionGraphs, Graphs);
	BlueprintImpl::AddWithChildren(MacroGraphs, Graphs);
	BlueprintImpl::AddWithChildren(UbergraphPages, Graphs);
	BlueprintImpl::AddWithChildren(DelegateSignatureGraphs, Graphs);
	for (const FBPInterfaceDescription& Interface : ImplementedInterfaces)
	{
		BlueprintImpl::AddWithChildren(Interface.Graphs, Graphs);
	}
}

UBlueprint* UBlueprint::GetBlueprintFromClass(const UClass* InClass)
{
	return InClass ? Cast<UBlueprint>(InClass->ClassGeneratedBy) : nullptr;
}

bool UBlueprint::GetBlueprintHierarchyFromClass(const UClass* InClass, TArray<UBlueprint*>& OutBlueprintParents)
{
	bool bNoErrors = true;
	for (const UClass* Class = InClass; Class; Class = Class->GetSuperClass())
	{
		if (UBlueprint* const Blueprint = GetBlueprintFromClass(Class))
		{
			OutBlueprintParents.Add(Blueprint);
			bNoErrors &= Blueprint->Status != BS_Error;
		}
	}
	return bNoErrors;
}

void UBlueprint::GetBlueprintClassNames(FName& GeneratedClassName, FName& SkeletonClassName, FName NameOverride) const
{
	const FString Name = (NameOverride.IsNone() ? GetFName() : NameOverride).ToString();
	GeneratedClassName = FName(*(Name + TEXT("_C")));
	SkeletonClassName = FName(*(TEXT("SKEL_") + Name + TEXT("_C")));
}

void UBlueprint::PostLoad()
{
	Super::PostLoad();
	if (CompileOnLoad)
	{
		CompileOnLoad(*this);
	}
}

void UBlueprint::GetAssetRegistryTags(FAssetRegistryTagsContext Context) const
{
	using FTag = FAssetRegistryTag;
	Super::GetAssetRegistryTags(Context);
	const auto AddPath = [&Context](FName Tag, const UObject* Object) {
		Context.AddTag(FTag(Tag, Object ? Object->GetExportPath() : TEXT("None"), FTag::TT_Hidden));
	};
	AddPath(FBlueprintTags::GeneratedClassPath, GeneratedClass);
	AddPath(FBlueprintTags::ParentClassPath, ParentClass);
	AddPath(FBlueprintTags::NativeParentClassPath, BlueprintImpl::GetNativeParent(ParentClass));
	const FString Type = StaticEnum<EBlueprintType>()->GetNameStringByValue(BlueprintType);
	Context.AddTag(FTag(FBlueprintTags::BlueprintType, Type, FTag::TT_Alphabetical));
}

FText UBlueprintGeneratedClass::GetDisplayNameText() const
{
	FString Name = GetName();
	Name.RemoveFromStart(TEXT("SKEL_"));
	Name.RemoveFromEnd(TEXT("_C"));
	return FText::FromString(FName::NameToDisplayString(Name, false));
}
