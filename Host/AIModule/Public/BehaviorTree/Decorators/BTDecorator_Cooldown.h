#pragma once

#include "BehaviorTree/BTDecorator.h"
#include "BTDecorator_Cooldown.generated.h"

/** Holds until the branch has run, and again a while later. */
UCLASS(HideCategories = (Condition))
class AIMODULE_API UBTDecorator_Cooldown : public UBTDecorator
{
	GENERATED_BODY()

public:
	UBTDecorator_Cooldown(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** Seconds. */
	UPROPERTY(Category = Decorator, EditAnywhere)
	float CoolDownTime = 5.0f;
};
