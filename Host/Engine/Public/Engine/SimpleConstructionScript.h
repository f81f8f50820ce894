#pragma once

#include "Engine/SCS_Node.h"
#include "SimpleConstructionScript.generated.h"

class UBlueprint;

/** The components that a Blueprint adds to its actors, as a tree. */
UCLASS()
class ENGINE_API USimpleConstructionScript : public UObject
{
	GENERATED_BODY()

public:
	/** Makes a node that is in no tree yet. Null for a class that is none of components, or is abstract. */
	USCS_Node* CreateNode(UClass* NewComponentClass, FName NewComponentVariableName = NAME_None);
	/** Appends the node to the roots. */
	void AddNode(USCS_Node* Node);
	const TArray<USCS_Node*>& GetRootNodes() const;
	/** Roots before what is attached to them. */
	const TArray<USCS_Node*>& GetAllNodes() const;
	USCS_Node* FindSCSNode(const FName InName) const;
	/** The stand-in for a root, which actors have while no other scene component is a root. */
	USCS_Node* GetDefaultSceneRootNode() const { return DefaultSceneRootNode; }
	/** Puts the stand-in into the tree, or takes it out when something else is the root. */
	void ValidateSceneRootNodes();
	UBlueprint* GetBlueprint() const;
	UClass* GetOwnerClass() const;

private:
	friend class USCS_Node;

	UPROPERTY()
	TArray<TObjectPtr<USCS_Node>> RootNodes;

	UPROPERTY()
	TArray<TObjectPtr<USCS_Node>> AllNodes;

	UPROPERTY()
	TObjectPtr<USCS_Node> DefaultSceneRootNode;
};
