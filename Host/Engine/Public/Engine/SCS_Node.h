#pragma once

#include "Misc/Guid.h"
#include "UObject/Object.h"
#include "SCS_Node.generated.h"

class UActorComponent;
class USimpleConstructionScript;

/** A component that a Blueprint adds: the template that actors get a copy of. */
UCLASS()
class ENGINE_API USCS_Node : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY()
	TObjectPtr<UClass> ComponentClass;

	/** Lies in the generated class and is named "<variable>_GEN_VARIABLE". */
	UPROPERTY()
	TObjectPtr<UActorComponent> ComponentTemplate;

	/** A component of a parent class that this one is attached to. */
	UPROPERTY()
	FName ParentComponentOrVariableName;

	UPROPERTY()
	TArray<TObjectPtr<USCS_Node>> ChildNodes;

	UPROPERTY()
	FGuid VariableGuid;

	/** Appends a node that is attached to this one. */
	void AddChildNode(USCS_Node* InNode, bool bAddToAllNodes = true);
	const TArray<USCS_Node*>& GetChildNodes() const;
	FName GetVariableName() const { return InternalVariableName; }
	void SetVariableName(const FName& NewName, bool bRenameTemplate = true);
	USimpleConstructionScript* GetSCS() const;
	bool IsRootNode() const;

private:
	friend class USimpleConstructionScript;

	UPROPERTY()
	FName InternalVariableName;
};
