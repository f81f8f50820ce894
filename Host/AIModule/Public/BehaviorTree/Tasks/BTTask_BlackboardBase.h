#pragma once

#include "BehaviorTree/BTTaskNode.h"
#include "BehaviorTree/BehaviorTreeTypes.h"
#include "BTTask_BlackboardBase.generated.h"

/** A task that uses a key of the blackboard. */
UCLASS(Abstract)
class AIMODULE_API UBTTask_BlackboardBase : public UBTTaskNode
{
	GENERATED_BODY()

public:
	FName GetSelectedBlackboardKey() const { return BlackboardKey.SelectedKeyName; }

protected:
	UPROPERTY(EditAnywhere, Category = Blackboard)
	FBlackboardKeySelector BlackboardKey;
};
