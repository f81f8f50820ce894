#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "BTNode.generated.h"

class UBehaviorTree;
class UBlackboardData;
class UBTCompositeNode;

/** A node of a behavior tree. It lies in its tree. */
UCLASS(Abstract, Config = Game)
class AIMODULE_API UBTNode : public UObject
{
	GENERATED_BODY()

public:
	/** Empty: the node is called after its class. */
	UPROPERTY(Category = Description, EditAnywhere)
	FString NodeName;

	/** NodeName, or when that is empty the class's short name. */
	FString GetNodeName() const;
	/** Null for the root, and in a tree that no editor or running tree has set up. */
	UBTCompositeNode* GetParentNode() const { return ParentNode; }
	/** Of the tree that the node lies in; null without one. */
	UBlackboardData* GetBlackboardAsset() const;

private:
	UPROPERTY()
	TObjectPtr<UBehaviorTree> TreeAsset;

	UPROPERTY()
	TObjectPtr<UBTCompositeNode> ParentNode;
};
