#pragma once

#include "BehaviorTree/BTNode.h"
#include "BTTaskNode.generated.h"

class UBTService;

/** A leaf: something to do. */
UCLASS(Abstract)
class AIMODULE_API UBTTaskNode : public UBTNode
{
	GENERATED_BODY()

public:
	UBTTaskNode(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UPROPERTY()
	TArray<TObjectPtr<UBTService>> Services;

protected:
	/** Whether a search that comes to the running task again leaves it alone. */
	UPROPERTY(EditAnywhere, Category = Task)
	uint8 bIgnoreRestartSelf : 1;
};
