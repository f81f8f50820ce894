#pragma once

#include "UObject/Object.h"
#include "Engine.generated.h"

/** What there is one of in the process. */
UCLASS(Abstract, Config = Engine, Transient)
class ENGINE_API UEngine : public UObject
{
	GENERATED_BODY()
};
