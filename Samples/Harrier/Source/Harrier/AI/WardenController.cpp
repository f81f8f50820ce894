#include "AI/WardenController.h"

#include "Engine/World.h"
#include "GameFramework/Pawn.h"
#include "GameFramework/PlayerController.h"

AWardenController::AWardenController()
{
	PrimaryActorTick.bCanEverTick = true;
}

void AWardenController::Tick(float DeltaTime)
{
	Super::Tick(DeltaTime);
	if (APawn* Walker = FindVisibleWalker())
	{
		Chase(Walker);
	}
	else if (Mood != EWardenMood::Patrolling)
	{
		Search(DeltaTime);
	}
}

APawn* AWardenController::FindVisibleWalker() const
{
	const APlayerController* Player = GetWorld()->GetFirstPlayerController();
	APawn* Walker = Player ? Player->GetPawn() : nullptr;
	if (!Walker || !GetPawn())
	{
		return nullptr;
	}
	const float Distance = FVector::Dist(GetPawn()->GetActorLocation(), Walker->GetActorLocation());
	return Distance <= SightRange && LineOfSightTo(Walker) ? Walker : nullptr;
}

void AWardenController::Chase(APawn* Walker)
{
	Mood = EWardenMood::Chasing;
	LastSeen = Walker->GetActorLocation();
	SearchSecondsLeft = SearchSeconds;
	MoveToActor(Walker);
}

void AWardenController::Search(float DeltaTime)
{
	if (Mood == EWardenMood::Chasing)
	{
		Mood = EWardenMood::Searching;
		MoveToLocation(LastSeen);
	}
	SearchSecondsLeft -= DeltaTime;
	if (SearchSecondsLeft <= 0.0f)
	{
		Mood = EWardenMood::Patrolling;
	}
}
