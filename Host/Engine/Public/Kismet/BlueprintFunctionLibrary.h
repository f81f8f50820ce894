#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "BlueprintFunctionLibrary.generated.h"

/** The base of classes that are nothing but static functions for Blueprints and scripts. */
UCLASS(Abstract)
class ENGINE_API UBlueprintFunctionLibrary : public UObject
{
	GENERATED_BODY()
};
