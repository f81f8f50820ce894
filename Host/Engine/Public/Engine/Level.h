#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "Level.generated.h"

class AActor;
class UWorld;

/** The actors of a world. Removed ones leave a null behind until the next frame. */
UCLASS(MinimalAPI)
class ULevel : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(Transient)
	TArray<TObjectPtr<AActor>> Actors;

	UPROPERTY(Transient)
	TObjectPtr<UWorld> OwningWorld;

	UWorld* GetWorld() const override { return OwningWorld; }
};
