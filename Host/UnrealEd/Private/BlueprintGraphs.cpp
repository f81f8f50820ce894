#include "Compiler/BlueprintCompilationManager.h"
#include "EdGraphSchema_K2.h"
#include "K2Node_FunctionEntry.h"
#include "K2Node_FunctionResult.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "UObject/Package.h"

namespace BlueprintGraphs
{
constexpr int32 ResultNodeDistance = 256; // graph units

/** Takes the graph out of the list; false when it is not in it. */
bool RemoveFrom(TArray<TObjectPtr<UEdGraph>>& Graphs, UEdGraph* Graph)
{
	return Graphs.Remove(Graph) > 0;
}
}

UEdGraph* FBlueprintEditorUtils::CreateNewGraph(UObject* ParentScope, const FName& GraphName,
	TSubclassOf<UEdGraph> GraphClass, TSubclassOf<UEdGraphSchema> SchemaClass)
{
	if (UObject* const Existing = FindObjectFast<UObject>(ParentScope, GraphName))
	{
		ensureMsgf(!Existing->IsA<UEdGraph>(), TEXT("%s has a graph named %s already"), *ParentScope->GetPathName(),
			*GraphName.ToString());
		Existing->Rename(nullptr, GetTransientPackage());
	}
	UEdGraph* const Graph = NewObject<UEdGraph>(ParentScope, GraphClass.Get(), GraphName, RF_Transactional);
	Graph->Schema = SchemaClass;
	Graph->GraphGuid = FGuid::NewGuid();
	return Graph;
}

void FBlueprintEditorUtils::CreateFunctionGraphTerminators(UEdGraph& Graph, UClass* Class)
{
	const UEdGraphSchema_K2* const Schema = GetDefault<UEdGraphSchema_K2>();
	Schema->CreateDefaultNodesForGraph(Graph);
	Schema->CreateFunctionGraphTerminators(Graph, Class);
}

void FBlueprintEditorUtils::CreateFunctionGraphTerminators(UEdGraph& Graph, const UFunction* Signature)
{
	const UEdGraphSchema_K2* const Schema = GetDefault<UEdGraphSchema_K2>();
	Schema->CreateDefaultNodesForGraph(Graph);
	if (Signature)
	{
		Schema->CreateFunctionGraphTerminators(Graph, Signature);
		return;
	}
	Schema->CreateFunctionGraphTerminators(Graph, static_cast<UClass*>(nullptr));
}

void FBlueprintEditorUtils::FinishFunctionGraph(UBlueprint* Blueprint, UEdGraph* Graph, bool bIsUserCreated)
{
	if (bIsUserCreated)
	{
		const UEdGraphSchema_K2* const Schema = GetDefault<UEdGraphSchema_K2>();
		Schema->AddExtraFunctionFlags(Graph, FUNC_BlueprintCallable | FUNC_BlueprintEvent | FUNC_Public);
		Schema->MarkFunctionEntryAsEditable(Graph, true);
	}
	Blueprint->Modify();
	Blueprint->FunctionGraphs.Add(Graph);
	ValidateBlueprintChildVariables(Blueprint, Graph->GetFName());
	FBlueprintCompilationManager::ExtendSkeleton(*Blueprint, *Graph);
	MarkBlueprintAsModified(Blueprint);
}

void FBlueprintEditorUtils::RemoveGraph(UBlueprint* Blueprint, UEdGraph* GraphToRemove)
{
	Blueprint->Modify();
	GraphToRemove->Modify();
	TArray<TObjectPtr<UEdGraph>>* const Lists[] = { &Blueprint->FunctionGraphs, &Blueprint->UbergraphPages,
		&Blueprint->MacroGraphs, &Blueprint->DelegateSignatureGraphs };
	for (TArray<TObjectPtr<UEdGraph>>* const List : Lists)
	{
		BlueprintGraphs::RemoveFrom(*List, GraphToRemove);
	}
	GraphToRemove->Rename(nullptr, GetTransientPackage());
	MarkBlueprintAsStructurallyModified(Blueprint);
}

UK2Node_EditablePinBase* FBlueprintEditorUtils::GetEntryNode(const UEdGraph* InGraph)
{
	TArray<UK2Node_FunctionEntry*> Entries;
	return InGraph && InGraph->GetNodesOfClass(Entries) ? Entries[0] : nullptr;
}

UK2Node_FunctionResult* FBlueprintEditorUtils::FindOrCreateFunctionResultNode(
	UK2Node_EditablePinBase* InFunctionEntryNode)
{
	UEdGraph* const Graph = InFunctionEntryNode ? InFunctionEntryNode->GetGraph() : nullptr;
	if (!Graph)
	{
		return nullptr;
	}
	TArray<UK2Node_FunctionResult*> Results;
	if (Graph->GetNodesOfClass(Results))
	{
		return Results[0];
	}
	Graph->Modify();
	FGraphNodeCreator<UK2Node_FunctionResult> Creator(*Graph);
	UK2Node_FunctionResult* const Result = Creator.CreateNode();
	const UK2Node_FunctionTerminator* const Entry = Cast<UK2Node_FunctionTerminator>(InFunctionEntryNode);
	Result->FunctionReference = Entry ? Entry->FunctionReference : FMemberReference();
	Result->bIsEditable = InFunctionEntryNode->bIsEditable;
	Result->NodePosX = InFunctionEntryNode->NodePosX + BlueprintGraphs::ResultNodeDistance;
	Result->NodePosY = InFunctionEntryNode->NodePosY;
	Creator.Finalize();
	UEdGraphPin* const Then = InFunctionEntryNode->FindPin(UEdGraphSchema_K2::PN_Then);
	if (Then && !Then->HasAnyConnections())
	{
		Then->MakeLinkTo(Result->FindPinChecked(UEdGraphSchema_K2::PN_Execute));
	}
	return Result;
}

UBlueprint* FBlueprintEditorUtils::FindBlueprintForGraph(const UEdGraph* Graph)
{
	return Graph ? Graph->GetTypedOuter<UBlueprint>() : nullptr;
}

UEdGraph* FBlueprintEditorUtils::FindEventGraph(const UBlueprint* Blueprint)
{
	for (UEdGraph* const Graph : Blueprint->UbergraphPages)
	{
		if (Graph && Graph->GetFName() == UEdGraphSchema_K2::GN_EventGraph)
		{
			return Graph;
		}
	}
	return nullptr;
}

void FBlueprintEditorUtils::RemoveNode(UBlueprint* Blueprint, UEdGraphNode* Node, bool bDontRecompile)
{
	Node->Modify();
	Node->DestroyNode();
	if (!bDontRecompile)
	{
		MarkBlueprintAsStructurallyModified(Blueprint);
	}
}
