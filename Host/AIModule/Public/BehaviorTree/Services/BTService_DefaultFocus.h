#pragma once

#include "BehaviorTree/Services/BTService_BlackboardBase.h"
#include "BTService_DefaultFocus.generated.h"

/** Lets the controller look at what a key of the blackboard holds. */
UCLASS(HideCategories = (Service))
class AIMODULE_API UBTService_DefaultFocus : public UBTService_BlackboardBase
{
	GENERATED_BODY()

public:
	UBTService_DefaultFocus(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

protected:
	UPROPERTY()
	uint8 FocusPriority = 0;
};
