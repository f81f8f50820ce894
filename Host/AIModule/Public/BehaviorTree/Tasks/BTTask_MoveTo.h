#pragma once

#include "BehaviorTree/Tasks/BTTask_BlackboardBase.h"
#include "BTTask_MoveTo.generated.h"

/** Goes to the place or the actor in a key of the blackboard. */
UCLASS(Config = Game)
class AIMODULE_API UBTTask_MoveTo : public UBTTask_BlackboardBase
{
	GENERATED_BODY()

public:
	UBTTask_MoveTo(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** Centimetres from the goal at which it has arrived. */
	UPROPERTY(Config, Category = Node, EditAnywhere, meta = (ClampMin = "0.0"))
	float AcceptableRadius = 5.0f;

	/** Centimetres that the key's value may change by before the path is searched again. */
	UPROPERTY(Category = Blackboard, EditAnywhere, AdvancedDisplay, meta = (ClampMin = "1"))
	float ObservedBlackboardValueTolerance = 4.75f;

	UPROPERTY(Category = Blackboard, EditAnywhere)
	uint8 bObserveBlackboardValue : 1;

	UPROPERTY(Category = Node, EditAnywhere)
	uint8 bAllowStrafe : 1;

	UPROPERTY(Category = Node, EditAnywhere, AdvancedDisplay)
	uint8 bAllowPartialPath : 1;

	UPROPERTY(Category = Node, EditAnywhere, AdvancedDisplay)
	uint8 bTrackMovingGoal : 1;
};
