#include "AIController.h"
#include "Engine/World.h"
#include "GameFramework/Character.h"
#include "GameFramework/CharacterMovementComponent.h"

#include <gtest/gtest.h>

TEST(AIController, WalksStraightToAnActorThatMovesAndStopsThere)
{
	UWorld* const World = UWorld::CreateWorld(EWorldType::Game, false);
	World->InitializeActorsForPlay(FURL());
	World->BeginPlay();
	ACharacter* const Walker = World->SpawnActor<ACharacter>();
	ACharacter* const Goal = World->SpawnActor<ACharacter>(FVector(1000, 0, 30), FRotator::ZeroRotator);
	AAIController* const Controller = World->SpawnActor<AAIController>();
	EXPECT_EQ(Controller->MoveToActor(Goal), EPathFollowingRequestResult::Failed) << "it has no pawn";
	Controller->Possess(Walker);
	Walker->GetCharacterMovement()->MaxWalkSpeed = 400.0f;

	EXPECT_EQ(Controller->MoveToActor(Goal), EPathFollowingRequestResult::RequestSuccessful);
	const auto Tick = [World](int32 Times) {
		for (int32 Index = 0; Index < Times; ++Index)
		{
			World->Tick(LEVELTICK_All, 0.1f);
		}
	};
	Tick(10);
	EXPECT_NEAR(Walker->GetActorLocation().X, 400.0, 50.0);
	Goal->SetActorLocation(FVector(500, 300, 30));
	Tick(20);
	EXPECT_LE(FVector::Dist2D(Walker->GetActorLocation(), Goal->GetActorLocation()), 5.1);
	EXPECT_EQ(Walker->GetActorLocation().Z, 0.0) << "it walks, and does not fly";
	EXPECT_EQ(Controller->GetMoveStatus(), EPathFollowingStatus::Idle);
	EXPECT_EQ(Controller->MoveToActor(Goal), EPathFollowingRequestResult::AlreadyAtGoal);

	EXPECT_EQ(Controller->MoveToLocation(FVector::ZeroVector), EPathFollowingRequestResult::RequestSuccessful);
	Walker->DetachFromControllerPendingDestroy();
	EXPECT_EQ(Controller->GetMoveStatus(), EPathFollowingStatus::Idle);
	Tick(1);
	World->DestroyWorld(false);
	CollectGarbage(RF_NoFlags);
}
