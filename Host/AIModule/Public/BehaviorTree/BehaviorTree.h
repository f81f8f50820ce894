#pragma once

#include "BehaviorTree/BTCompositeNode.h"
#include "BehaviorTree.generated.h"

class UBlackboardData;
class UEdGraph;

/** An asset: what a controller does, as a tree. */
UCLASS(BlueprintType)
class AIMODULE_API UBehaviorTree : public UObject
{
	GENERATED_BODY()

public:
	/** Null when nothing hangs under the root. */
	UPROPERTY()
	TObjectPtr<UBTCompositeNode> RootNode;

	/** What the editor shows. */
	UPROPERTY()
	TObjectPtr<UEdGraph> BTGraph;

	UPROPERTY()
	TObjectPtr<UBlackboardData> BlackboardAsset;

	UPROPERTY()
	TArray<TObjectPtr<UBTDecorator>> RootDecorators;

	UPROPERTY()
	TArray<FBTDecoratorLogic> RootDecoratorOps;

	UBlackboardData* GetBlackboardAsset() const { return BlackboardAsset; }
};
