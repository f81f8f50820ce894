#pragma once

#include "Misc/Guid.h"
#include "Templates/SubclassOf.h"
#include "UObject/Object.h"
#include "BlueprintCore.generated.h"

/** What every Blueprint has: the classes that it is compiled to. */
UCLASS()
class ENGINE_API UBlueprintCore : public UObject
{
	GENERATED_BODY()

public:
	/** The class's members without code, rebuilt at each structural change: what nodes find their members in. */
	UPROPERTY(Transient, NonTransactional)
	TSubclassOf<UObject> SkeletonGeneratedClass;

	/** The class of the last compile; the same object as long as the Blueprint lives. */
	UPROPERTY()
	TSubclassOf<UObject> GeneratedClass;

	UPROPERTY()
	FGuid BlueprintGuid;
};
