#include "GameFramework/Controller.h"

#include "Engine/World.h"
#include "GameFramework/Character.h"
#include "GameFramework/PawnMovementComponent.h"
#include "GameFramework/PlayerController.h"

AController::AController(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
{
	PrimaryActorTick.bCanEverTick = true;
}

void AController::Possess(APawn* InPawn)
{
	APawn* const OldPawn = Pawn;
	OnPossess(InPawn);
	if (OldPawn != Pawn)
	{
		OnPossessedPawnChanged.Broadcast(OldPawn, Pawn);
	}
}

void AController::OnPossess(APawn* InPawn)
{
	if (InPawn == Pawn)
	{
		return;
	}
	if (Pawn)
	{
		OnUnPossess();
	}
	if (!InPawn)
	{
		return;
	}
	if (AController* const Other = InPawn->GetController())
	{
		Other->UnPossess();
	}
	InPawn->PossessedBy(this);
	SetPawn(InPawn);
	SetControlRotation(InPawn->GetActorRotation());
	ReceivePossess(InPawn);
}

void AController::UnPossess()
{
	APawn* const OldPawn = Pawn;
	if (OldPawn)
	{
		OnUnPossess();
		OnPossessedPawnChanged.Broadcast(OldPawn, nullptr);
	}
}

void AController::OnUnPossess()
{
	APawn* const OldPawn = Pawn;
	if (OldPawn)
	{
		SetPawn(nullptr);
		OldPawn->UnPossessed();
		ReceiveUnPossess(OldPawn);
	}
}

void AController::PawnPendingDestroy(APawn* inPawn)
{
	if (inPawn == Pawn)
	{
		UnPossess();
	}
}

ACharacter* AController::GetCharacter() const
{
	return Cast<ACharacter>(Pawn);
}

void AController::StopMovement()
{
	if (UPawnMovementComponent* const Movement = Pawn ? Pawn->GetMovementComponent() : nullptr)
	{
		Movement->StopMovementImmediately();
	}
}

bool AController::LineOfSightTo(const AActor* Other, FVector, bool) const
{
	return IsValid(Other) && Other->GetWorld() == GetWorld();
}

void AController::Destroyed()
{
	UnPossess();
	Super::Destroyed();
}

APlayerController::APlayerController(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
{
}

void APlayerController::OnPossess(APawn* InPawn)
{
	Super::OnPossess(InPawn);
	if (InPawn && GetPawn() == InPawn)
	{
		InPawn->PawnClientRestart();
	}
}

void APlayerController::Tick(float DeltaSeconds)
{
	Super::Tick(DeltaSeconds);
	PlayerTick(DeltaSeconds);
}

void APlayerController::UpdateRotation(float DeltaTime)
{
	constexpr double SteepestDegrees = 89.9;
	FRotator Rotation = (GetControlRotation() + RotationInput).GetNormalized();
	Rotation.Pitch = FMath::Clamp(Rotation.Pitch, -SteepestDegrees, SteepestDegrees);
	RotationInput = FRotator::ZeroRotator;
	SetControlRotation(Rotation);
	if (APawn* const Driven = GetPawn())
	{
		Driven->FaceRotation(Rotation, DeltaTime);
	}
}
