#pragma once

#include "BehaviorTree/BTAuxiliaryNode.h"
#include "BehaviorTree/BehaviorTreeTypes.h"
#include "Containers/EnumAsByte.h"
#include "BTDecorator.generated.h"

/** A condition on the way to a node. */
UCLASS(Abstract)
class AIMODULE_API UBTDecorator : public UBTAuxiliaryNode
{
	GENERATED_BODY()

public:
	UBTDecorator(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	EBTFlowAbortMode::Type GetFlowAbortMode() const { return FlowAbortMode; }
	bool IsInversed() const { return bInverseCondition; }

protected:
	UPROPERTY(Category = Condition, EditAnywhere)
	uint8 bInverseCondition : 1;

	UPROPERTY(Category = FlowControl, EditAnywhere)
	TEnumAsByte<EBTFlowAbortMode::Type> FlowAbortMode = EBTFlowAbortMode::None;
};
