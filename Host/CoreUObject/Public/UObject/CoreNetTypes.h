#pragma once

#include "UObject/ObjectMacros.h"
#include "CoreNetTypes.generated.h"

/** To whom a replicated variable goes. Nothing is replicated here; the choice is kept. */
UENUM(BlueprintType)
enum ELifetimeCondition : int
{
	COND_None,
	COND_InitialOnly,
	COND_OwnerOnly,
	COND_SkipOwner,
	COND_SimulatedOnly,
	COND_AutonomousOnly,
	COND_SimulatedOrPhysics,
	COND_InitialOrOwner,
	COND_Custom,
	COND_ReplayOrOwner,
	COND_ReplayOnly,
	COND_SimulatedOnlyNoReplay,
	COND_SimulatedOrPhysicsNoReplay,
	COND_SkipReplay,
	COND_Dynamic,
	COND_Never,
	COND_NetGroup,
	COND_Max,
};
