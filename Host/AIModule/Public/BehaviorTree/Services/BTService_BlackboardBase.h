#pragma once

#include "BehaviorTree/BTService.h"
#include "BehaviorTree/BehaviorTreeTypes.h"
#include "BTService_BlackboardBase.generated.h"

/** A service that uses a key of the blackboard. */
UCLASS(Abstract)
class AIMODULE_API UBTService_BlackboardBase : public UBTService
{
	GENERATED_BODY()

public:
	FName GetSelectedBlackboardKey() const { return BlackboardKey.SelectedKeyName; }

protected:
	UPROPERTY(EditAnywhere, Category = Blackboard)
	FBlackboardKeySelector BlackboardKey;
};
