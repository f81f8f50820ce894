#pragma once

#include "CoreMinimal.h"
#include "UObject/Interface.h"
#include "Watcher.generated.h"

class AActor;

UINTERFACE(BlueprintType)
class HARRIER_API UWatcher : public UInterface
{
	GENERATED_BODY()
};

/** Whoever keeps an eye on the moor. */
class HARRIER_API IWatcher
{
	GENERATED_BODY()

public:
	/** @param Distance  centimetres */
	UFUNCTION(BlueprintImplementableEvent, BlueprintCallable, Category = "Watch")
	void OnSighted(AActor* Walker, float Distance);

	/** Whether a walker at the distance (centimetres) would be noticed. */
	UFUNCTION(BlueprintImplementableEvent, BlueprintCallable, Category = "Watch")
	bool CanSee(const AActor* Walker, float Distance) const;
};
