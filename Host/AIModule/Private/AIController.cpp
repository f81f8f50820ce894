#include "AIController.h"

#include "GameFramework/Pawn.h"
#include "GameFramework/PawnMovementComponent.h"
#include "Modules/ModuleManager.h"

IMPLEMENT_MODULE(FDefaultModuleImpl, AIModule)

namespace AIControllerImpl
{
/** Centimetres. */
constexpr float DefaultAcceptanceRadius = 5.0f;
}

AAIController::AAIController(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
{
}

EPathFollowingRequestResult::Type AAIController::MoveToActor(
	AActor* Goal, float AcceptanceRadius, bool bStopOnOverlap, bool bUsePathfinding, bool bCanStrafe)
{
	return IsValid(Goal) ? BeginMove(Goal, Goal->GetActorLocation(), AcceptanceRadius)
						 : BeginMove(nullptr, FVector(NAN), AcceptanceRadius);
}

EPathFollowingRequestResult::Type AAIController::MoveToLocation(const FVector& Dest, float AcceptanceRadius,
	bool bStopOnOverlap, bool bUsePathfinding, bool bProjectDestinationToNavigation, bool bCanStrafe)
{
	return BeginMove(nullptr, Dest, AcceptanceRadius);
}

EPathFollowingRequestResult::Type AAIController::BeginMove(
	AActor* Actor, const FVector& Location, float AcceptanceRadius)
{
	EndMove(EPathFollowingResult::Aborted);
	const bool bIsPlace = FMath::IsFinite(Location.X) && FMath::IsFinite(Location.Y) && FMath::IsFinite(Location.Z);
	if (!bIsPlace || !GetPawn() || !GetPawn()->GetMovementComponent())
	{
		return EPathFollowingRequestResult::Failed;
	}
	GoalActor = Actor;
	bGoalIsActor = Actor != nullptr;
	GoalLocation = Location;
	ArrivalRadius = AcceptanceRadius < 0.0f ? AIControllerImpl::DefaultAcceptanceRadius : AcceptanceRadius;
	++LastRequestId;
	bIsMoving = true;
	if (GetWayToGoal().Size() <= ArrivalRadius)
	{
		EndMove(EPathFollowingResult::Success);
		return EPathFollowingRequestResult::AlreadyAtGoal;
	}
	return EPathFollowingRequestResult::RequestSuccessful;
}

FVector AAIController::GetWayToGoal() const
{
	const FVector Goal = GoalActor.IsValid() ? GoalActor->GetActorLocation() : GoalLocation;
	FVector Way = Goal - GetPawn()->GetActorLocation();
	Way.Z = 0.0;
	return Way;
}

void AAIController::EndMove(EPathFollowingResult::Type Result)
{
	if (bIsMoving)
	{
		bIsMoving = false;
		OnMoveCompleted(LastRequestId, Result);
		ReceiveMoveCompleted.Broadcast(LastRequestId, Result);
	}
}

void AAIController::StopMovement()
{
	Super::StopMovement();
	EndMove(EPathFollowingResult::Aborted);
}

void AAIController::OnUnPossess()
{
	EndMove(EPathFollowingResult::Aborted);
	Super::OnUnPossess();
}

EPathFollowingStatus::Type AAIController::GetMoveStatus() const
{
	return bIsMoving ? EPathFollowingStatus::Moving : EPathFollowingStatus::Idle;
}

void AAIController::Tick(float DeltaTime)
{
	Super::Tick(DeltaTime);
	if (!bIsMoving)
	{
		return;
	}
	UPawnMovementComponent* const Movement = GetPawn()->GetMovementComponent();
	if (!Movement || (bGoalIsActor && !GoalActor.IsValid()))
	{
		EndMove(EPathFollowingResult::Invalid);
		return;
	}
	const FVector Way = GetWayToGoal();
	if (Way.Size() <= ArrivalRadius)
	{
		EndMove(EPathFollowingResult::Success);
		return;
	}
	// No farther than the goal.
	const double Speed =
		FMath::Min(static_cast<double>(Movement->GetMaxSpeed()), Way.Size() / FMath::Max(DeltaTime, 1.e-6f));
	Movement->RequestDirectMove(Way.GetSafeNormal() * Speed, false);
}
