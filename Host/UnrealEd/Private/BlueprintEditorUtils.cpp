#include "Kismet2/BlueprintEditorUtils.h"

#include "Compiler/BlueprintCompilationManager.h"
#include "EdGraphSchema_K2.h"
#include "GameFramework/Actor.h"

void FBlueprintEditorUtils::MarkBlueprintAsStructurallyModified(UBlueprint* Blueprint)
{
	Blueprint->Modify();
	FBlueprintCompilationManager::RegenerateSkeleton(*Blueprint);
	MarkBlueprintAsModified(Blueprint);
}

void FBlueprintEditorUtils::MarkBlueprintAsModified(UBlueprint* Blueprint, FPropertyChangedEvent)
{
	if (Blueprint->Status != BS_BeingCreated)
	{
		Blueprint->Status = BS_Dirty;
	}
	Blueprint->MarkPackageDirty();
	Blueprint->BroadcastChanged();
}

bool FBlueprintEditorUtils::ImplementNewInterface(UBlueprint* Blueprint, FTopLevelAssetPath InterfaceClassPathName)
{
	UClass* const Interface = FindObject<UClass>(nullptr, *InterfaceClassPathName.ToString());
	const bool bInterface = Interface && Interface->IsChildOf(UInterface::StaticClass());
	const bool bHas = Blueprint->ImplementedInterfaces.ContainsByPredicate(
		[Interface](const FBPInterfaceDescription& Each) { return Each.Interface == Interface; });
	if (!bInterface || bHas)
	{
		return false;
	}
	Blueprint->Modify();
	FBPInterfaceDescription Description;
	Description.Interface = Interface;
	for (TFieldIterator<UFunction> It(Interface); It; ++It)
	{
		// Functions without outputs are implemented as events, when somebody wants them.
		if (!It->HasAnyFunctionFlags(FUNC_BlueprintEvent) || UEdGraphSchema_K2::FunctionCanBePlacedAsEvent(*It))
		{
			continue;
		}
		UEdGraph* const Graph =
			CreateNewGraph(Blueprint, It->GetFName(), UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
		Graph->bAllowDeletion = false;
		Graph->InterfaceGuid = FGuid::NewGuid();
		CreateFunctionGraphTerminators(*Graph, Interface);
		Description.Graphs.Add(Graph);
	}
	Blueprint->ImplementedInterfaces.Add(MoveTemp(Description));
	MarkBlueprintAsStructurallyModified(Blueprint);
	return true;
}

bool FBlueprintEditorUtils::IsActorBased(const UBlueprint* Blueprint)
{
	return Blueprint->ParentClass && Blueprint->ParentClass->IsChildOf(AActor::StaticClass());
}

void FBlueprintEditorUtils::GetDependentBlueprints(UBlueprint* Blueprint, TArray<UBlueprint*>& DependentBlueprints)
{
	DependentBlueprints.Append(FBlueprintCompilationManager::GetChildren(*Blueprint));
}
