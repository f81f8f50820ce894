#pragma once

#include "GameFramework/Actor.h"
#include "Info.generated.h"

/** An actor without a place: rules, settings and their like. */
UCLASS(Abstract, HideCategories = (Input, Movement, Collision, Rendering, Transformation), NotPlaceable)
class ENGINE_API AInfo : public AActor
{
	GENERATED_BODY()
};
