#pragma once

#include "BehaviorTree/BTDecorator.h"
#include "BTDecorator_Loop.generated.h"

/** Runs the branch several times. */
UCLASS(HideCategories = (Condition))
class AIMODULE_API UBTDecorator_Loop : public UBTDecorator
{
	GENERATED_BODY()

public:
	UBTDecorator_Loop(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UPROPERTY(Category = Decorator, EditAnywhere)
	int32 NumLoops = 3;

	UPROPERTY(Category = Decorator, EditAnywhere)
	bool bInfiniteLoop = false;

	/** Seconds; below zero for ever. */
	UPROPERTY(Category = Decorator, EditAnywhere)
	float InfiniteLoopTimeoutTime = -1.0f;
};
