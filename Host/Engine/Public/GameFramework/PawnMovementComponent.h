#pragma once

#include "GameFramework/NavMovementComponent.h"
#include "PawnMovementComponent.generated.h"

class APawn;

/** Moves a pawn by the input that it gathers. */
UCLASS(Abstract)
class ENGINE_API UPawnMovementComponent : public UNavMovementComponent
{
	GENERATED_BODY()

public:
	UFUNCTION(BlueprintCallable, Category = "Pawn|Components|PawnMovement")
	virtual void AddInputVector(FVector WorldVector, bool bForce = false);
	UFUNCTION(BlueprintCallable, Category = "Pawn|Components|PawnMovement", meta = (Keywords = "GetInput"))
	FVector GetPendingInputVector() const;
	/** The input since the last call. */
	UFUNCTION(BlueprintCallable, Category = "Pawn|Components|PawnMovement")
	virtual FVector ConsumeInputVector();
	/** Null for a component of an actor that is no pawn. */
	UFUNCTION(BlueprintCallable, Category = "Pawn|Components|PawnMovement")
	APawn* GetPawnOwner() const;
};
