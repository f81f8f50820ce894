#pragma once

#include "BehaviorTree/BTDecorator.h"
#include "BTDecorator_BlackboardBase.generated.h"

/** A condition on a key of the blackboard. */
UCLASS(Abstract)
class AIMODULE_API UBTDecorator_BlackboardBase : public UBTDecorator
{
	GENERATED_BODY()

public:
	FName GetSelectedBlackboardKey() const { return BlackboardKey.SelectedKeyName; }

protected:
	UPROPERTY(EditAnywhere, Category = Blackboard)
	FBlackboardKeySelector BlackboardKey;
};
