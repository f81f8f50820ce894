#include "GameFramework/GameModeBase.h"

#include "Engine/World.h"
#include "GameFramework/Pawn.h"
#include "GameFramework/PlayerController.h"

AGameModeBase::AGameModeBase()
{
	PlayerControllerClass = APlayerController::StaticClass();
}

void AGameModeBase::StartPlay()
{
	GetWorld()->BeginPlayOfActors();
}

UClass* AGameModeBase::GetDefaultPawnClassForController(AController*)
{
	return DefaultPawnClass;
}

APawn* AGameModeBase::SpawnDefaultPawnAtTransform(AController* NewPlayer, const FTransform& SpawnTransform)
{
	FActorSpawnParameters Parameters;
	Parameters.Instigator = GetInstigator();
	Parameters.ObjectFlags |= RF_Transient;
	return GetWorld()->SpawnActor<APawn>(GetDefaultPawnClassForController(NewPlayer), SpawnTransform, Parameters);
}

APlayerController* AGameModeBase::SpawnPlayerController()
{
	FActorSpawnParameters Parameters;
	Parameters.ObjectFlags |= RF_Transient;
	return GetWorld()->SpawnActor<APlayerController>(PlayerControllerClass, Parameters);
}

void AGameModeBase::RestartPlayerAtTransform(AController* NewPlayer, const FTransform& SpawnTransform)
{
	if (!IsValid(NewPlayer))
	{
		return;
	}
	if (APawn* const Present = NewPlayer->GetPawn())
	{
		Present->SetActorLocationAndRotation(SpawnTransform.GetLocation(), SpawnTransform.Rotator());
	}
	else if (GetDefaultPawnClassForController(NewPlayer))
	{
		NewPlayer->Possess(SpawnDefaultPawnAtTransform(NewPlayer, SpawnTransform));
	}
}
