#pragma once

#include "GameFramework/PawnMovementComponent.h"
#include "CharacterMovementComponent.generated.h"

class ACharacter;

/**
 * Walks: each tick the character moves in the plane, by its input or by what is requested, at MaxWalkSpeed at most.
 *
 * There is no ground and no gravity here, and speed is reached at once.
 */
UCLASS()
class ENGINE_API UCharacterMovementComponent : public UPawnMovementComponent
{
	GENERATED_BODY()

public:
	UCharacterMovementComponent(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** Centimetres a second. */
	UPROPERTY(Category = "Character Movement: Walking", EditAnywhere, BlueprintReadWrite,
		meta = (ClampMin = "0", UIMin = "0", ForceUnits = "cm/s"))
	float MaxWalkSpeed = 600.0f;

	/** Degrees a second. */
	UPROPERTY(Category = "Character Movement (Rotation Settings)", EditAnywhere, BlueprintReadWrite)
	FRotator RotationRate = FRotator(0.0, 360.0, 0.0);

	/** Whether the character turns to where it walks, as fast as RotationRate.Yaw allows. */
	UPROPERTY(Category = "Character Movement (Rotation Settings)", EditAnywhere, BlueprintReadWrite)
	uint8 bOrientRotationToMovement : 1;

	float GetMaxSpeed() const override { return MaxWalkSpeed; }
	void RequestDirectMove(const FVector& MoveVelocity, bool bForceMaxSpeed) override;
	void TickComponent(float DeltaTime, ELevelTick TickType, FActorComponentTickFunction* ThisTickFunction) override;
	UFUNCTION(BlueprintCallable, Category = "Pawn|Components|CharacterMovement")
	ACharacter* GetCharacterOwner() const;

private:
	FRotator TurnTowardsVelocity(const FRotator& Rotation, float DeltaTime) const;

	FVector RequestedVelocity;
};
