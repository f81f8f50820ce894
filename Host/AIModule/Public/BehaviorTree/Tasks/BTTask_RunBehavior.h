#pragma once

#include "BehaviorTree/BTTaskNode.h"
#include "BTTask_RunBehavior.generated.h"

/** Runs another tree in its place. */
UCLASS()
class AIMODULE_API UBTTask_RunBehavior : public UBTTaskNode
{
	GENERATED_BODY()

public:
	UBTTask_RunBehavior(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UBehaviorTree* GetSubtreeAsset() const { return BehaviorAsset; }

protected:
	UPROPERTY(Category = Node, EditAnywhere)
	TObjectPtr<UBehaviorTree> BehaviorAsset;
};
