#pragma once

#include "BehaviorTree/BTAuxiliaryNode.h"
#include "BTService.generated.h"

/** Works again and again as long as its branch runs. */
UCLASS(Abstract)
class AIMODULE_API UBTService : public UBTAuxiliaryNode
{
	GENERATED_BODY()

public:
	UBTService(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

protected:
	/** Seconds from one time to the next. */
	UPROPERTY(Category = Service, EditAnywhere, meta = (ClampMin = "0.001"))
	float Interval = 0.5f;

	/** Seconds that Interval varies by, up and down. */
	UPROPERTY(Category = Service, EditAnywhere, meta = (ClampMin = "0.0"))
	float RandomDeviation = 0.1f;

	UPROPERTY(Category = Service, EditAnywhere, AdvancedDisplay)
	uint8 bCallTickOnSearchStart : 1;

	UPROPERTY(Category = Service, EditAnywhere, AdvancedDisplay)
	uint8 bRestartTimerOnEachActivation : 1;
};
