#pragma once

#include "CoreMinimal.h"
#include "Engine/Blueprint.h"
#include "TestBlueprint.generated.h"

/** As widgets and animations have them: a Blueprint of a class of its own. */
UCLASS()
class UKestrelTestBlueprint : public UBlueprint
{
	GENERATED_BODY()
};
