#include "Kismet2/KismetEditorUtilities.h"

#include "Compiler/BlueprintCompilationManager.h"
#include "EdGraphSchema_K2.h"
#include "Engine/BlueprintGeneratedClass.h"
#include "Engine/SimpleConstructionScript.h"
#include "GameFramework/Actor.h"
#include "K2Node_CallParentFunction.h"
#include "K2Node_Event.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Kismet2/CompilerResultsLog.h"
#include "Misc/ITransaction.h"
#include "UObject/Package.h"

namespace KismetEditorUtilities
{
constexpr int32 DefaultNodeDistance = 208; // graph units

/** Events that a new Blueprint shows as a hint, by the class that has them. */
struct FDefaultEvent
{
	const TCHAR* Class;
	const TCHAR* Event;
};

const FDefaultEvent DefaultEvents[] = {
	{ TEXT("Actor"), TEXT("ReceiveBeginPlay") },
	{ TEXT("Actor"), TEXT("ReceiveActorBeginOverlap") },
	{ TEXT("Actor"), TEXT("ReceiveTick") },
	{ TEXT("ActorComponent"), TEXT("ReceiveBeginPlay") },
	{ TEXT("ActorComponent"), TEXT("ReceiveTick") },
};

UClass* FindNativeParent(UClass* Class, FName Name)
{
	while (Class && !(Class->IsNative() && Class->GetFName() == Name))
	{
		Class = Class->GetSuperClass();
	}
	return Class;
}

bool HasEventGraph(EBlueprintType Type)
{
	return Type == BPTYPE_Normal || Type == BPTYPE_LevelScript || Type == BPTYPE_Const;
}

void AddEventGraph(UBlueprint& Blueprint)
{
	UEdGraph* const Graph = FBlueprintEditorUtils::CreateNewGraph(
		&Blueprint, UEdGraphSchema_K2::GN_EventGraph, UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
	Graph->bAllowDeletion = false;
	Blueprint.UbergraphPages.Add(Graph);
	int32 NodePosY = 0;
	for (const FDefaultEvent& Event : DefaultEvents)
	{
		if (UClass* const Class = FindNativeParent(Blueprint.ParentClass, Event.Class))
		{
			FKismetEditorUtilities::AddDefaultEventNode(&Blueprint, Graph, Event.Event, Class, NodePosY);
		}
	}
}

/** A child of a Blueprint calls what its parent has built. */
void AddCallToParent(UEdGraph& Graph, UClass& Parent)
{
	const UFunction* const Function = Parent.FindFunctionByName(Graph.GetFName());
	UEdGraphPin* const Then = Graph.Nodes[0]->FindPin(UEdGraphSchema_K2::PN_Then);
	if (!UBlueprint::GetBlueprintFromClass(&Parent) || !Function || !Then)
	{
		return;
	}
	FGraphNodeCreator<UK2Node_CallParentFunction> Creator(Graph);
	UK2Node_CallParentFunction* const Call = Creator.CreateNode();
	Call->SetFromFunction(Function);
	Call->NodePosX = DefaultNodeDistance;
	Creator.Finalize();
	Then->MakeLinkTo(Call->FindPinChecked(UEdGraphSchema_K2::PN_Execute));
}

void AddConstructionScript(UBlueprint& Blueprint)
{
	UEdGraph* const Graph = FBlueprintEditorUtils::CreateNewGraph(&Blueprint,
		UEdGraphSchema_K2::FN_UserConstructionScript, UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
	FBlueprintEditorUtils::AddFunctionGraph(&Blueprint, Graph, false, AActor::StaticClass());
	Graph->bAllowDeletion = false;
	AddCallToParent(*Graph, *Blueprint.ParentClass.Get());
}

void AddComponents(UBlueprint& Blueprint, UBlueprintGeneratedClass& Class)
{
	USimpleConstructionScript* const Script =
		NewObject<USimpleConstructionScript>(&Class, TEXT("SimpleConstructionScript_0"), RF_Transactional);
	Blueprint.SimpleConstructionScript = Script;
	Class.SimpleConstructionScript = Script;
	Script->ValidateSceneRootNodes();
}
}

bool FKismetEditorUtilities::CanCreateBlueprintOfClass(const UClass* Class)
{
	if (!Class ||
		Class->HasAnyClassFlags(CLASS_Interface | CLASS_Deprecated | CLASS_NewerVersionExists | CLASS_Hidden) ||
		Class->IsChildOf(UInterface::StaticClass()))
	{
		return false;
	}
	// Said of a class or the nearest parent that says anything.
	for (const UClass* Each = Class; Each; Each = Each->GetSuperClass())
	{
		if (Each->HasMetaData(FBlueprintMetadata::MD_IsBlueprintBase))
		{
			return Each->GetBoolMetaData(FBlueprintMetadata::MD_IsBlueprintBase);
		}
	}
	return Class == UObject::StaticClass() || !Class->IsNative();
}

UBlueprint* FKismetEditorUtilities::CreateBlueprint(
	UClass* ParentClass, UObject* Outer, const FName NewBPName, enum EBlueprintType BlueprintType, FName CallingContext)
{
	return CreateBlueprint(ParentClass, Outer, NewBPName, BlueprintType, UBlueprint::StaticClass(),
		UBlueprintGeneratedClass::StaticClass(), CallingContext);
}

UBlueprint* FKismetEditorUtilities::CreateBlueprint(UClass* ParentClass, UObject* Outer, const FName NewBPName,
	enum EBlueprintType BlueprintType, TSubclassOf<UBlueprint> BlueprintClassType,
	TSubclassOf<UBlueprintGeneratedClass> BlueprintGeneratedClassType, FName)
{
	checkf(CanCreateBlueprintOfClass(ParentClass), TEXT("There can be no Blueprint of the class %s"),
		ParentClass ? *ParentClass->GetName() : TEXT("None"));
	checkf(!FindObjectFast<UBlueprint>(Outer, NewBPName), TEXT("There is a Blueprint named %s in %s already"),
		*NewBPName.ToString(), *Outer->GetPathName());
	// Making an asset is not undone, neither as a whole nor in parts.
	const TGuardValue<ITransaction*> NoTransaction(GUndo, nullptr);
	UBlueprint* const Blueprint =
		NewObject<UBlueprint>(Outer, BlueprintClassType.Get(), NewBPName, RF_Public | RF_Standalone | RF_Transactional);
	Blueprint->Status = BS_BeingCreated;
	Blueprint->BlueprintType = BlueprintType;
	Blueprint->ParentClass = ParentClass;
	Blueprint->BlueprintGuid = FGuid::NewGuid();

	FName ClassName;
	FName SkeletonName;
	Blueprint->GetBlueprintClassNames(ClassName, SkeletonName);
	UBlueprintGeneratedClass* const Class = NewObject<UBlueprintGeneratedClass>(
		Outer, BlueprintGeneratedClassType.Get(), ClassName, RF_Public | RF_Transactional);
	Blueprint->GeneratedClass = Class;
	Class->ClassGeneratedBy = Blueprint;
	Class->SetSuperStruct(ParentClass);
	Class->ClassFlags |= CLASS_CompiledFromBlueprint;
	Class->StaticLink(true);

	if (FBlueprintEditorUtils::IsActorBased(Blueprint) && KismetEditorUtilities::HasEventGraph(BlueprintType))
	{
		KismetEditorUtilities::AddComponents(*Blueprint, *Class);
	}
	if (KismetEditorUtilities::HasEventGraph(BlueprintType))
	{
		KismetEditorUtilities::AddEventGraph(*Blueprint);
	}
	if (Blueprint->SimpleConstructionScript)
	{
		KismetEditorUtilities::AddConstructionScript(*Blueprint);
	}
	CompileBlueprint(Blueprint, EBlueprintCompileOptions::SkipGarbageCollection);
	return Blueprint;
}

UK2Node_Event* FKismetEditorUtilities::AddDefaultEventNode(
	UBlueprint* InBlueprint, UEdGraph* InGraph, FName InEventName, UClass* InEventClass, int32& InOutNodePosY)
{
	const UFunction* const Event = InEventClass->FindFunctionByName(InEventName);
	if (!UEdGraphSchema_K2::FunctionCanBePlacedAsEvent(Event))
	{
		return nullptr;
	}
	FGraphNodeCreator<UK2Node_Event> Creator(*InGraph);
	UK2Node_Event* const Node = Creator.CreateNode();
	Node->EventReference.SetExternalMember(InEventName, InEventClass);
	Node->bOverrideFunction = true;
	Node->NodePosY = InOutNodePosY;
	Creator.Finalize();
	Node->MakeAutomaticallyPlacedGhostNode();
	InOutNodePosY += KismetEditorUtilities::DefaultNodeDistance;
	return Node;
}

void FKismetEditorUtilities::CompileBlueprint(
	UBlueprint* BlueprintObj, EBlueprintCompileOptions CompileFlags, FCompilerResultsLog* pResults)
{
	UPackage* const Package = BlueprintObj->GetOutermost();
	const bool bWasDirty = Package->IsDirty();
	const TGuardValue<ITransaction*> NoTransaction(GUndo, nullptr);
	FCompilerResultsLog OwnLog;
	FBlueprintCompilationManager::Compile(*BlueprintObj, CompileFlags, pResults ? *pResults : OwnLog);
	Package->SetDirtyFlag(bWasDirty);
	if (!EnumHasAnyFlags(CompileFlags, EBlueprintCompileOptions::SkipGarbageCollection))
	{
		CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
	}
}
