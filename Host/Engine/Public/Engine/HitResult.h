#pragma once

#include "CoreMinimal.h"
#include "UObject/NoExportTypes.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "HitResult.generated.h"

class AActor;
class UPrimitiveComponent;

/** What a trace or a move has hit. There are no collisions here, so only a game's own code fills one. */
USTRUCT(BlueprintType)
struct FHitResult
{
	GENERATED_BODY()

	FHitResult();
	explicit FHitResult(float InTime);
	explicit FHitResult(const FVector& Start, const FVector& End);
	FHitResult(AActor* InActor, UPrimitiveComponent* InComponent, const FVector& HitLoc, const FVector& HitNorm);

	UPROPERTY()
	int32 FaceIndex = INDEX_NONE;

	/** Between 0, at the start, and 1. */
	UPROPERTY()
	float Time = 1.0f;

	/** Centimetres from the start. */
	UPROPERTY()
	float Distance = 0.0f;

	UPROPERTY()
	FVector Location;

	UPROPERTY()
	FVector ImpactPoint;

	UPROPERTY()
	FVector Normal;

	UPROPERTY()
	FVector ImpactNormal;

	UPROPERTY()
	FVector TraceStart;

	UPROPERTY()
	FVector TraceEnd;

	UPROPERTY()
	uint8 bBlockingHit : 1;

	UPROPERTY()
	uint8 bStartPenetrating : 1;

	UPROPERTY()
	TWeakObjectPtr<UPrimitiveComponent> Component;

	UPROPERTY()
	FName BoneName;

	/** Null when nothing is hit, or what was hit is gone. */
	AActor* GetActor() const;
	UPrimitiveComponent* GetComponent() const;
	bool IsValidBlockingHit() const { return bBlockingHit && !bStartPenetrating; }

private:
	UPROPERTY()
	TWeakObjectPtr<AActor> HitActor;
};
