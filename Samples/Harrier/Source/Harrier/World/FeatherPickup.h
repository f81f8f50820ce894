#pragma once

#include "CoreMinimal.h"
#include "GameFramework/Actor.h"
#include "FeatherPickup.generated.h"

class UPrimitiveComponent;
class USphereComponent;

/** Feathers on the ground: whoever walks over them takes as many as the satchel holds, and the rest stay. */
UCLASS()
class HARRIER_API AFeatherPickup : public AActor
{
	GENERATED_BODY()

public:
	AFeatherPickup();

	virtual void BeginPlay() override;

protected:
	UFUNCTION()
	void OnOverlap(UPrimitiveComponent* OverlappedComponent, AActor* OtherActor, UPrimitiveComponent* OtherComponent,
		int32 OtherBodyIndex, bool bFromSweep, const FHitResult& SweepResult);

	/** How many lie here. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Feathers", meta = (ClampMin = "1"))
	int32 Count = 1;

private:
	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<USphereComponent> Reach;
};
