#pragma once

#include "Components/SceneComponent.h"
#include "MovementComponent.generated.h"

/** Moves one component of its actor: by default, the root. */
UCLASS(ClassGroup = Movement, Abstract, BlueprintType)
class ENGINE_API UMovementComponent : public UActorComponent
{
	GENERATED_BODY()

public:
	UMovementComponent(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** What is moved. */
	UPROPERTY(BlueprintReadOnly, Transient, DuplicateTransient, Category = "MovementComponent")
	TObjectPtr<USceneComponent> UpdatedComponent;

	/** Centimetres a second. */
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Velocity")
	FVector Velocity;

	UFUNCTION(BlueprintCallable, Category = "Components|Movement")
	virtual void SetUpdatedComponent(USceneComponent* NewUpdatedComponent);
	UFUNCTION(BlueprintCallable, Category = "Components|Movement")
	virtual float GetMaxSpeed() const { return 0.0f; }
	UFUNCTION(BlueprintCallable, Category = "Components|Movement")
	virtual void StopMovementImmediately() { Velocity = FVector::ZeroVector; }
	/** Nothing is in the way here, so bSweep changes nothing. @return whether there is a component to be moved */
	bool MoveUpdatedComponent(
		const FVector& Delta, const FRotator& NewRotation, bool bSweep, FHitResult* OutHit = nullptr);

	void OnRegister() override;
};
