#include "Engine/SimpleConstructionScript.h"

#include "Components/SceneComponent.h"
#include "Engine/Blueprint.h"
#include "GameFramework/Actor.h"

namespace SimpleConstructionScriptImpl
{
const FString TemplateSuffix = TEXT("_GEN_VARIABLE");

/** The list as the engine hands it out: a TObjectPtr is laid out like a pointer. */
const TArray<USCS_Node*>& Decay(const TArray<TObjectPtr<USCS_Node>>& Nodes)
{
	return reinterpret_cast<const TArray<USCS_Node*>&>(Nodes);
}

bool IsScene(const USCS_Node& Node)
{
	return Node.ComponentClass && Node.ComponentClass->IsChildOf(USceneComponent::StaticClass());
}
}

void USCS_Node::AddChildNode(USCS_Node* InNode, bool bAddToAllNodes)
{
	Modify();
	ChildNodes.Add(InNode);
	if (bAddToAllNodes)
	{
		GetSCS()->Modify();
		GetSCS()->AllNodes.AddUnique(InNode);
	}
}

const TArray<USCS_Node*>& USCS_Node::GetChildNodes() const
{
	return SimpleConstructionScriptImpl::Decay(ChildNodes);
}

void USCS_Node::SetVariableName(const FName& NewName, bool bRenameTemplate)
{
	InternalVariableName = NewName;
	if (bRenameTemplate && ComponentTemplate)
	{
		ComponentTemplate->Rename(*(NewName.ToString() + SimpleConstructionScriptImpl::TemplateSuffix));
	}
}

USimpleConstructionScript* USCS_Node::GetSCS() const
{
	return CastChecked<USimpleConstructionScript>(GetOuter());
}

bool USCS_Node::IsRootNode() const
{
	return GetSCS()->RootNodes.Contains(this);
}

USCS_Node* USimpleConstructionScript::CreateNode(UClass* NewComponentClass, FName NewComponentVariableName)
{
	if (!NewComponentClass || !NewComponentClass->IsChildOf(UActorComponent::StaticClass()) ||
		NewComponentClass->HasAnyClassFlags(CLASS_Abstract))
	{
		return nullptr;
	}
	USCS_Node* const Node = NewObject<USCS_Node>(this, NAME_None, RF_Transactional);
	FString Wanted =
		NewComponentVariableName.IsNone() ? NewComponentClass->GetName() : NewComponentVariableName.ToString();
	if (NewComponentVariableName.IsNone())
	{
		Wanted.RemoveFromEnd(TEXT("Component"));
	}
	FName Name(*Wanted);
	for (int32 Number = 1; FindSCSNode(Name); ++Number)
	{
		Name = FName(*(Wanted + FString::FromInt(Number)));
	}
	Node->ComponentClass = NewComponentClass;
	Node->VariableGuid = FGuid::NewGuid();
	Node->InternalVariableName = Name;
	Node->ComponentTemplate = NewObject<UActorComponent>(GetOwnerClass(), NewComponentClass,
		FName(*(Name.ToString() + SimpleConstructionScriptImpl::TemplateSuffix)),
		RF_ArchetypeObject | RF_Transactional | RF_Public);
	return Node;
}

void USimpleConstructionScript::AddNode(USCS_Node* Node)
{
	if (!RootNodes.Contains(Node))
	{
		Modify();
		RootNodes.Add(Node);
		AllNodes.AddUnique(Node);
		ValidateSceneRootNodes();
	}
}

const TArray<USCS_Node*>& USimpleConstructionScript::GetRootNodes() const
{
	return SimpleConstructionScriptImpl::Decay(RootNodes);
}

const TArray<USCS_Node*>& USimpleConstructionScript::GetAllNodes() const
{
	return SimpleConstructionScriptImpl::Decay(AllNodes);
}

USCS_Node* USimpleConstructionScript::FindSCSNode(const FName InName) const
{
	const TObjectPtr<USCS_Node>* const Found =
		AllNodes.FindByPredicate([InName](const USCS_Node* Node) { return Node && Node->GetVariableName() == InName; });
	return Found ? Found->Get() : nullptr;
}

void USimpleConstructionScript::ValidateSceneRootNodes()
{
	const UClass* const Parent = GetOwnerClass()->GetSuperClass();
	if (!Parent || !Parent->IsChildOf(AActor::StaticClass()))
	{
		return;
	}
	const bool bParentHasRoot =
		GetDefault<AActor>(Parent)->GetRootComponent() || !Parent->IsNative(); // a parent Blueprint has one of its own
	const bool bHasRoot = RootNodes.ContainsByPredicate([this](const USCS_Node* Node) {
		return Node != DefaultSceneRootNode && SimpleConstructionScriptImpl::IsScene(*Node);
	});
	if (bParentHasRoot || bHasRoot)
	{
		RootNodes.Remove(DefaultSceneRootNode);
		AllNodes.Remove(DefaultSceneRootNode);
		return;
	}
	if (!DefaultSceneRootNode)
	{
		DefaultSceneRootNode = CreateNode(USceneComponent::StaticClass(), TEXT("DefaultSceneRoot"));
	}
	if (!RootNodes.Contains(DefaultSceneRootNode))
	{
		RootNodes.Add(DefaultSceneRootNode);
		AllNodes.AddUnique(DefaultSceneRootNode);
	}
}

UBlueprint* USimpleConstructionScript::GetBlueprint() const
{
	return UBlueprint::GetBlueprintFromClass(GetOwnerClass());
}

UClass* USimpleConstructionScript::GetOwnerClass() const
{
	return CastChecked<UClass>(GetOuter());
}
