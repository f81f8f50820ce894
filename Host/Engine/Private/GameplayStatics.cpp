#include "Kismet/GameplayStatics.h"

#include "EngineUtils.h"
#include "GameFramework/Character.h"
#include "GameFramework/GameModeBase.h"
#include "GameFramework/PlayerController.h"

namespace GameplayStatics
{
UWorld* GetWorld(const UObject* WorldContextObject)
{
	return WorldContextObject ? WorldContextObject->GetWorld() : nullptr;
}
}

APlayerController* UGameplayStatics::GetPlayerController(const UObject* WorldContextObject, int32 PlayerIndex)
{
	TArray<AActor*> Controllers;
	GetAllActorsOfClass(WorldContextObject, APlayerController::StaticClass(), Controllers);
	return Controllers.IsValidIndex(PlayerIndex) ? static_cast<APlayerController*>(Controllers[PlayerIndex]) : nullptr;
}

APawn* UGameplayStatics::GetPlayerPawn(const UObject* WorldContextObject, int32 PlayerIndex)
{
	const APlayerController* const Controller = GetPlayerController(WorldContextObject, PlayerIndex);
	return Controller ? Controller->GetPawn() : nullptr;
}

ACharacter* UGameplayStatics::GetPlayerCharacter(const UObject* WorldContextObject, int32 PlayerIndex)
{
	return Cast<ACharacter>(GetPlayerPawn(WorldContextObject, PlayerIndex));
}

AGameModeBase* UGameplayStatics::GetGameMode(const UObject* WorldContextObject)
{
	const UWorld* const World = GameplayStatics::GetWorld(WorldContextObject);
	return World ? World->GetAuthGameMode() : nullptr;
}

AActor* UGameplayStatics::GetActorOfClass(const UObject* WorldContextObject, TSubclassOf<AActor> ActorClass)
{
	TArray<AActor*> Actors;
	GetAllActorsOfClass(WorldContextObject, ActorClass, Actors);
	return Actors.IsEmpty() ? nullptr : Actors[0];
}

void UGameplayStatics::GetAllActorsOfClass(
	const UObject* WorldContextObject, TSubclassOf<AActor> ActorClass, TArray<AActor*>& OutActors)
{
	OutActors.Reset();
	const UWorld* const World = GameplayStatics::GetWorld(WorldContextObject);
	if (!World || !ActorClass)
	{
		return;
	}
	for (TActorIterator<AActor> It(World, ActorClass); It; ++It)
	{
		OutActors.Add(*It);
	}
}

double UGameplayStatics::GetTimeSeconds(const UObject* WorldContextObject)
{
	const UWorld* const World = GameplayStatics::GetWorld(WorldContextObject);
	return World ? World->GetTimeSeconds() : 0.0;
}

double UGameplayStatics::GetWorldDeltaSeconds(const UObject* WorldContextObject)
{
	const UWorld* const World = GameplayStatics::GetWorld(WorldContextObject);
	return World ? World->GetDeltaSeconds() : 0.0;
}
