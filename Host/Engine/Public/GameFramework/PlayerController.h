#pragma once

#include "GameFramework/Controller.h"
#include "PlayerController.generated.h"

/** The controller of a person. There are no input devices here: see UInputComponent. */
UCLASS(Config = Game, BlueprintType, Blueprintable,
	meta = (ShortTooltip = "A Player Controller is an actor responsible for controlling a Pawn used by the player."))
class ENGINE_API APlayerController : public AController
{
	GENERATED_BODY()

public:
	APlayerController(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** Degrees for one unit of input. */
	float InputYawScale = 2.5f;
	float InputPitchScale = -2.5f;

	/** Gathers turns until the next tick. */
	virtual void AddYawInput(float Val) { RotationInput.Yaw += Val * InputYawScale; }
	virtual void AddPitchInput(float Val) { RotationInput.Pitch += Val * InputPitchScale; }
	void Tick(float DeltaSeconds) override;
	virtual void PlayerTick(float DeltaTime) { UpdateRotation(DeltaTime); }
	/** Turns by the input, no steeper than straight up or down, and has the pawn face that way. */
	virtual void UpdateRotation(float DeltaTime);

protected:
	void OnPossess(APawn* InPawn) override;

	UPROPERTY(Transient)
	FRotator RotationInput;
};
