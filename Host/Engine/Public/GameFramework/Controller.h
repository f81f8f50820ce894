#pragma once

#include "GameFramework/Actor.h"
#include "Controller.generated.h"

class ACharacter;
class APawn;

DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(FOnPossessedPawnChanged, APawn*, OldPawn, APawn*, NewPawn);

/** A will that drives one pawn at a time. */
UCLASS(Abstract, NotPlaceable, NotBlueprintable, HideCategories = (Collision, Rendering, Transformation))
class ENGINE_API AController : public AActor
{
	GENERATED_BODY()

public:
	AController(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UPROPERTY(BlueprintAssignable, Category = "Pawn")
	FOnPossessedPawnChanged OnPossessedPawnChanged;

	/** Lets go of the present pawn, and takes this one from whoever drives it. Null is the same as UnPossess. */
	UFUNCTION(BlueprintCallable, Category = "Pawn", meta = (Keywords = "set controller"))
	virtual void Possess(APawn* InPawn) final;
	UFUNCTION(BlueprintCallable, Category = "Pawn", meta = (Keywords = "set controller"))
	virtual void UnPossess() final;
	APawn* GetPawn() const { return Pawn; }
	template <class T>
	T* GetPawn() const
	{
		return Cast<T>(Pawn);
	}
	/** The pawn when it is a character. */
	ACharacter* GetCharacter() const;
	virtual void SetPawn(APawn* InPawn) { Pawn = InPawn; }
	/** The pawn is about to be destroyed. */
	virtual void PawnPendingDestroy(APawn* inPawn);

	UFUNCTION(BlueprintCallable, Category = "Pawn")
	virtual FRotator GetControlRotation() const { return ControlRotation; }
	UFUNCTION(BlueprintCallable, Category = "Pawn", meta = (Tooltip = "Set the control rotation."))
	virtual void SetControlRotation(const FRotator& NewRotation) { ControlRotation = NewRotation; }
	UFUNCTION(BlueprintCallable, Category = "Pawn")
	virtual void StopMovement();
	/** Worlds here have no geometry: everything of the same world is in sight. */
	UFUNCTION(BlueprintCallable, Category = "Controller")
	virtual bool LineOfSightTo(
		const AActor* Other, FVector ViewPoint = FVector(ForceInit), bool bAlternateChecks = false) const;

	UFUNCTION(BlueprintCallable, Category = "Pawn", meta = (DisplayName = "Get Controlled Pawn"))
	APawn* K2_GetPawn() const { return Pawn; }

	void Destroyed() override;

protected:
	virtual void OnPossess(APawn* InPawn);
	virtual void OnUnPossess();
	UFUNCTION(BlueprintImplementableEvent, meta = (DisplayName = "On Possess"))
	void ReceivePossess(APawn* PossessedPawn);
	UFUNCTION(BlueprintImplementableEvent, meta = (DisplayName = "On UnPossess"))
	void ReceiveUnPossess(APawn* UnpossessedPawn);

	/** Where it looks. Pawns, arms and cameras follow it if they are told so. */
	UPROPERTY()
	FRotator ControlRotation;

private:
	UPROPERTY()
	TObjectPtr<APawn> Pawn;
};
