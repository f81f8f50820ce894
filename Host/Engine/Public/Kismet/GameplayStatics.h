#pragma once

#include "Kismet/BlueprintFunctionLibrary.h"
#include "Templates/SubclassOf.h"
#include "GameplayStatics.generated.h"

class AActor;
class ACharacter;
class AGameModeBase;
class APawn;
class APlayerController;

/** What Blueprints and scripts ask of the world that an object is part of. Outside of a world: nothing is found. */
UCLASS()
class ENGINE_API UGameplayStatics : public UBlueprintFunctionLibrary
{
	GENERATED_BODY()

public:
	/** In the order in which they were spawned, from 0. */
	UFUNCTION(BlueprintPure, Category = "Game", meta = (WorldContext = "WorldContextObject"))
	static APlayerController* GetPlayerController(const UObject* WorldContextObject, int32 PlayerIndex);
	UFUNCTION(BlueprintPure, Category = "Game", meta = (WorldContext = "WorldContextObject"))
	static APawn* GetPlayerPawn(const UObject* WorldContextObject, int32 PlayerIndex);
	UFUNCTION(BlueprintPure, Category = "Game", meta = (WorldContext = "WorldContextObject"))
	static ACharacter* GetPlayerCharacter(const UObject* WorldContextObject, int32 PlayerIndex);
	UFUNCTION(BlueprintPure, Category = "Game", meta = (WorldContext = "WorldContextObject"))
	static AGameModeBase* GetGameMode(const UObject* WorldContextObject);

	UFUNCTION(BlueprintCallable, Category = "Actor",
		meta = (WorldContext = "WorldContextObject", DeterminesOutputType = "ActorClass"))
	static AActor* GetActorOfClass(const UObject* WorldContextObject, TSubclassOf<AActor> ActorClass);
	UFUNCTION(BlueprintCallable, Category = "Actor",
		meta = (WorldContext = "WorldContextObject", DeterminesOutputType = "ActorClass",
			DynamicOutputParam = "OutActors"))
	static void GetAllActorsOfClass(
		const UObject* WorldContextObject, TSubclassOf<AActor> ActorClass, TArray<AActor*>& OutActors);
	UFUNCTION(BlueprintPure, Category = "Utilities|Time", meta = (WorldContext = "WorldContextObject"))
	static double GetTimeSeconds(const UObject* WorldContextObject);
	UFUNCTION(BlueprintPure, Category = "Utilities|Time", meta = (WorldContext = "WorldContextObject"))
	static double GetWorldDeltaSeconds(const UObject* WorldContextObject);
};
