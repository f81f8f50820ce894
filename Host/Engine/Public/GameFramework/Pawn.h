#pragma once

#include "GameFramework/Actor.h"
#include "Pawn.generated.h"

class AController;
class UPawnMovementComponent;

/** An actor that a controller can drive. */
UCLASS(Config = Game, BlueprintType, Blueprintable, HideCategories = (Navigation),
	meta = (ShortTooltip = "A Pawn is an actor that can be 'possessed' and receive input from a controller."))
class ENGINE_API APawn : public AActor
{
	GENERATED_BODY()

public:
	APawn(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Pawn")
	uint8 bUseControllerRotationPitch : 1;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Pawn")
	uint8 bUseControllerRotationYaw : 1;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Pawn")
	uint8 bUseControllerRotationRoll : 1;

	/** Centimetres above the pawn's place. */
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Camera")
	float BaseEyeHeight = 64.0f;

	/** Null while nobody drives the pawn. */
	UFUNCTION(BlueprintCallable, Category = "Pawn")
	AController* GetController() const { return Controller; }
	template <class T>
	T* GetController() const
	{
		return Cast<T>(GetController());
	}
	UFUNCTION(BlueprintPure, Category = "Pawn")
	FRotator GetControlRotation() const;
	UFUNCTION(BlueprintPure, Category = "Pawn")
	virtual bool IsPawnControlled() const { return Controller != nullptr; }
	UFUNCTION(BlueprintPure, Category = "Pawn")
	virtual bool IsPlayerControlled() const;
	UFUNCTION(BlueprintPure, Category = "Pawn")
	virtual bool IsLocallyControlled() const { return IsPawnControlled(); }

	/** Called by the controller. */
	virtual void PossessedBy(AController* NewController);
	virtual void UnPossessed();
	/** For a pawn that has died: the controller lets go of it. */
	UFUNCTION(BlueprintCallable, Category = "Pawn")
	virtual void DetachFromControllerPendingDestroy();
	/** The pawn faces this way, as far as its settings let the controller turn it. */
	virtual void FaceRotation(FRotator NewControlRotation, float DeltaTime = 0.0f);
	/** Makes the input component and has it set up; for the controller of a player. */
	virtual void PawnClientRestart();
	virtual void SetupPlayerInputComponent(UInputComponent* PlayerInputComponent) {}
	/** Null when there is none. */
	UFUNCTION(BlueprintCallable, Category = "Pawn", meta = (Keywords = "Get Movement Component"))
	virtual UPawnMovementComponent* GetMovementComponent() const;

	/** Gathers input until the movement component takes it: a direction in the world times a scale. */
	UFUNCTION(BlueprintCallable, Category = "Pawn|Input", meta = (Keywords = "AddInput"))
	virtual void AddMovementInput(FVector WorldDirection, float ScaleValue = 1.0f, bool bForce = false);
	UFUNCTION(BlueprintCallable, Category = "Pawn|Input", meta = (Keywords = "GetMovementInput GetInput"))
	FVector GetPendingMovementInputVector() const { return ControlInputVector; }
	/** What was taken last. */
	UFUNCTION(BlueprintCallable, Category = "Pawn|Input", meta = (Keywords = "GetMovementInput GetInput"))
	FVector GetLastMovementInputVector() const { return LastControlInputVector; }
	UFUNCTION(BlueprintCallable, Category = "Pawn|Input", meta = (Keywords = "ConsumeInput"))
	virtual FVector ConsumeMovementInputVector();
	/** Turns the player's controller; nothing without one. */
	UFUNCTION(BlueprintCallable, Category = "Pawn|Input", meta = (Keywords = "up down"))
	virtual void AddControllerPitchInput(float Val);
	UFUNCTION(BlueprintCallable, Category = "Pawn|Input", meta = (Keywords = "left right turn"))
	virtual void AddControllerYawInput(float Val);

	FVector GetVelocity() const override;
	void Destroyed() override;

protected:
	UFUNCTION(BlueprintImplementableEvent, meta = (DisplayName = "Possessed"))
	void ReceivePossessed(AController* NewController);
	UFUNCTION(BlueprintImplementableEvent, meta = (DisplayName = "Unpossessed"))
	void ReceiveUnpossessed(AController* OldController);

	UPROPERTY()
	TObjectPtr<AController> Controller;

	UPROPERTY(Transient)
	FVector ControlInputVector;

	UPROPERTY(Transient)
	FVector LastControlInputVector;
};
