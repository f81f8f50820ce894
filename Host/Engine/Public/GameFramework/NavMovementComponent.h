#pragma once

#include "GameFramework/MovementComponent.h"
#include "NavMovementComponent.generated.h"

/** Movement that can be told where to go. */
UCLASS(Abstract, Config = Engine)
class ENGINE_API UNavMovementComponent : public UMovementComponent
{
	GENERATED_BODY()

public:
	/** Asks for a velocity, in centimetres a second, for the next tick. */
	virtual void RequestDirectMove(const FVector& MoveVelocity, bool bForceMaxSpeed) {}
};
