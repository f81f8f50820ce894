#pragma once

#include "Engine/Blueprint.h"
#include "UObject/TopLevelAssetPath.h"
#include "UObject/UnrealType.h"

class UEdGraphSchema;
class UK2Node_EditablePinBase;
class UK2Node_FunctionResult;

/** Changes Blueprints the way the editor does. */
class UNREALED_API FBlueprintEditorUtils
{
public:
	// Variables.

	/**
	 * Appends a variable, visible to Blueprints and editable in defaults alone, and marks the Blueprint as structurally
	 * modified. The type loses const, weak and reference.
	 *
	 * @return false when a variable or component of the class or a parent has the name
	 */
	static bool AddMemberVariable(UBlueprint* Blueprint, const FName& NewVarName, const FEdGraphPinType& NewVarType,
		const FString& DefaultValue = FString());
	/** The nodes of the variable get pins of the new type. */
	static void ChangeMemberVariableType(
		UBlueprint* Blueprint, const FName VariableName, const FEdGraphPinType& NewPinType);
	/** INDEX_NONE when this Blueprint declares none of the name. */
	static int32 FindNewVariableIndex(const UBlueprint* Blueprint, const FName& InName);
	/** InLocalVarScope is null for a member. Native variables are left alone. */
	static void SetBlueprintVariableCategory(UBlueprint* Blueprint, const FName& VarName,
		const UStruct* InLocalVarScope, const FText& NewCategory, bool bDontRecompile = false);
	/** Sets or clears CPF_DisableEditOnInstance. */
	static void SetBlueprintOnlyEditableFlag(UBlueprint* Blueprint, const FName& VarName, const bool bNewBlueprintOnly);
	/** Renames variables of children that clash with the name. */
	static void ValidateBlueprintChildVariables(UBlueprint* InBlueprint, const FName InVariableName);
	static FName FindUniqueKismetName(
		const UBlueprint* InBlueprint, const FString& InBaseName, UStruct* InScope = nullptr);
	/**
	 * Reads the text into the property of the container. False when it is no such value.
	 *
	 * Texts are those of pins: "1,2,3" for vectors and rotators, three of these with bars between for transforms, and
	 * colours name red, green and blue. Others are as properties export them.
	 */
	static bool PropertyValueFromString(const FProperty* Property, const FString& StrValue, uint8* Container,
		UObject* OwningObject = nullptr, int32 PortFlags = 0);

	/** Whether values of the type can be elements of sets and keys of maps; containers cannot. */
	static bool HasGetTypeHash(const FEdGraphPinType& PinType);

	// What has changed.

	/** Rebuilds the skeleton class; the generated class follows at the next compile. */
	static void MarkBlueprintAsStructurallyModified(UBlueprint* Blueprint);
	static void MarkBlueprintAsModified(
		UBlueprint* Blueprint, FPropertyChangedEvent PropertyChangedEvent = FPropertyChangedEvent(nullptr));

	// Graphs.

	/** A graph that is in no list of the Blueprint yet. One of the same name is renamed away. */
	static UEdGraph* CreateNewGraph(UObject* ParentScope, const FName& GraphName, TSubclassOf<UEdGraph> GraphClass,
		TSubclassOf<UEdGraphSchema> SchemaClass);
	/**
	 * Adds the graph to the functions, with an entry node, and a result node when the signature has outputs.
	 *
	 * @param SignatureFromObject  a class: the function of that name in it is overridden; a function: its signature is
	 *                             copied; null: no parameters
	 */
	template <typename SignatureType>
	static void AddFunctionGraph(
		UBlueprint* Blueprint, UEdGraph* Graph, bool bIsUserCreated, SignatureType* SignatureFromObject)
	{
		CreateFunctionGraphTerminators(*Graph, SignatureFromObject);
		FinishFunctionGraph(Blueprint, Graph, bIsUserCreated);
	}
	static void RemoveGraph(UBlueprint* Blueprint, UEdGraph* GraphToRemove);
	/** Null when there is none. */
	static UK2Node_EditablePinBase* GetEntryNode(const UEdGraph* InGraph);
	/** A new one is linked to the entry when nothing else is. Null for a null entry. */
	static UK2Node_FunctionResult* FindOrCreateFunctionResultNode(UK2Node_EditablePinBase* InFunctionEntryNode);
	static UBlueprint* FindBlueprintForGraph(const UEdGraph* Graph);
	static UEdGraph* FindEventGraph(const UBlueprint* Blueprint);
	static void RemoveNode(UBlueprint* Blueprint, UEdGraphNode* Node, bool bDontRecompile = false);
	template <class NodeType>
	static void GetAllNodesOfClass(const UBlueprint* Blueprint, TArray<NodeType*>& OutNodes)
	{
		TArray<UEdGraph*> Graphs;
		Blueprint->GetAllGraphs(Graphs);
		for (const UEdGraph* const Graph : Graphs)
		{
			Graph->GetNodesOfClass(OutNodes);
		}
	}

	// Interfaces and parents.

	/** A graph for each function with outputs is made. False when the Blueprint has the interface already. */
	static bool ImplementNewInterface(UBlueprint* Blueprint, FTopLevelAssetPath InterfaceClassPathName);
	static bool IsActorBased(const UBlueprint* Blueprint);
	/** Blueprints in memory whose parent, or its parent, is this one; nearer ones first. */
	static void GetDependentBlueprints(UBlueprint* Blueprint, TArray<UBlueprint*>& DependentBlueprints);

private:
	static void CreateFunctionGraphTerminators(UEdGraph& Graph, UClass* Class);
	static void CreateFunctionGraphTerminators(UEdGraph& Graph, const UFunction* Signature);
	static void FinishFunctionGraph(UBlueprint* Blueprint, UEdGraph* Graph, bool bIsUserCreated);
};
