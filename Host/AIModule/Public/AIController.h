#pragma once

#include "CoreMinimal.h"
#include "GameFramework/Controller.h"
#include "Navigation/PathFollowingComponent.h"
#include "AIController.generated.h"

/** The request's id, and how the move ended. Every move ends with one. */
DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(
	FAIMoveCompletedSignature, int32, RequestID, EPathFollowingResult::Type, Result);

/**
 * A controller that drives its pawn by itself.
 *
 * There is no navigation here: the pawn goes straight to its goal, at the speed of its movement component, and nothing
 * is in its way.
 */
UCLASS(ClassGroup = AI, BlueprintType, Blueprintable)
class AIMODULE_API AAIController : public AController
{
	GENERATED_BODY()

public:
	AAIController(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UPROPERTY(BlueprintAssignable, meta = (DisplayName = "MoveCompleted"))
	FAIMoveCompletedSignature ReceiveMoveCompleted;

	/**
	 * Goes to where the actor is, and after it when it moves. A move that is going on is aborted.
	 *
	 * @param AcceptanceRadius  centimetres from the goal at which the pawn has arrived; -1: a little
	 */
	UFUNCTION(BlueprintCallable, Category = "AI|Navigation", meta = (AdvancedDisplay = "bStopOnOverlap,bCanStrafe"))
	EPathFollowingRequestResult::Type MoveToActor(AActor* Goal, float AcceptanceRadius = -1.0f,
		bool bStopOnOverlap = true, bool bUsePathfinding = true, bool bCanStrafe = true);
	UFUNCTION(BlueprintCallable, Category = "AI|Navigation", meta = (AdvancedDisplay = "bStopOnOverlap,bCanStrafe"))
	EPathFollowingRequestResult::Type MoveToLocation(const FVector& Dest, float AcceptanceRadius = -1.0f,
		bool bStopOnOverlap = true, bool bUsePathfinding = true, bool bProjectDestinationToNavigation = false,
		bool bCanStrafe = true);
	void StopMovement() override;
	UFUNCTION(BlueprintCallable, Category = "AI|Navigation")
	EPathFollowingStatus::Type GetMoveStatus() const;
	bool HasPartialPath() const { return false; }

	void Tick(float DeltaTime) override;
	virtual void OnMoveCompleted(int32 RequestID, EPathFollowingResult::Type Result) {}

protected:
	void OnUnPossess() override;

private:
	EPathFollowingRequestResult::Type BeginMove(AActor* Actor, const FVector& Location, float AcceptanceRadius);
	void EndMove(EPathFollowingResult::Type Result);
	/** From the pawn, in the plane. */
	FVector GetWayToGoal() const;

	UPROPERTY(Transient)
	TWeakObjectPtr<AActor> GoalActor;

	FVector GoalLocation;
	float ArrivalRadius = 0.0f; // centimetres
	int32 LastRequestId = 0;
	bool bGoalIsActor = false;
	bool bIsMoving = false;
};
