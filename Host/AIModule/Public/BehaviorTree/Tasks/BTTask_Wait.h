#pragma once

#include "BehaviorTree/BTTaskNode.h"
#include "BTTask_Wait.generated.h"

/** Does nothing for a while. */
UCLASS()
class AIMODULE_API UBTTask_Wait : public UBTTaskNode
{
	GENERATED_BODY()

public:
	UBTTask_Wait(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** Seconds. */
	UPROPERTY(Category = Wait, EditAnywhere)
	float WaitTime = 5.0f;

	/** Seconds that WaitTime varies by, up and down. */
	UPROPERTY(Category = Wait, EditAnywhere)
	float RandomDeviation = 0.0f;
};
