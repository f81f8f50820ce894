#pragma once

#include "CoreMinimal.h"
#include "GameFramework/Character.h"
#include "HarrierCharacter.generated.h"

class UCameraComponent;
class UHealthComponent;
class UInputComponent;
class USpringArmComponent;

/** The walker on the moor: seen from behind, faster on the run, with a satchel for feathers. */
UCLASS()
class HARRIER_API AHarrierCharacter : public ACharacter
{
	GENERATED_BODY()

public:
	AHarrierCharacter();

	virtual void BeginPlay() override;
	virtual void SetupPlayerInputComponent(UInputComponent* PlayerInputComponent) override;

	/** Puts feathers into the satchel. @return how many found room */
	UFUNCTION(BlueprintCallable, Category = "Satchel")
	int32 AddFeathers(int32 Count);

	UFUNCTION(BlueprintPure, Category = "Satchel")
	int32 GetFeathers() const { return Feathers; }

	UHealthComponent* GetHealth() const { return Health; }

protected:
	void MoveForward(float Value);
	void MoveRight(float Value);
	void StartRunning();
	void StopRunning();

	UFUNCTION()
	void OnDied();

	/** Centimetres a second. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Movement")
	float WalkSpeed = 300.0f;

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Movement")
	float RunSpeed = 600.0f;

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Satchel")
	int32 MaxFeathers = 12;

private:
	void SetRunning(bool bRun);

	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<USpringArmComponent> CameraArm;

	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<UCameraComponent> Camera;

	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<UHealthComponent> Health;

	UPROPERTY(VisibleAnywhere, Category = "Satchel")
	int32 Feathers = 0;
};
