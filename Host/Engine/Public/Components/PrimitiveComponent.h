#pragma once

#include "Components/SceneComponent.h"
#include "PrimitiveComponent.generated.h"

class UPrimitiveComponent;

DECLARE_DYNAMIC_MULTICAST_DELEGATE_FiveParams(FComponentHitSignature, UPrimitiveComponent*, HitComponent, AActor*,
	OtherActor, UPrimitiveComponent*, OtherComp, FVector, NormalImpulse, const FHitResult&, Hit);
DECLARE_DYNAMIC_MULTICAST_DELEGATE_SixParams(FComponentBeginOverlapSignature, UPrimitiveComponent*, OverlappedComponent,
	AActor*, OtherActor, UPrimitiveComponent*, OtherComp, int32, OtherBodyIndex, bool, bFromSweep, const FHitResult&,
	SweepResult);
DECLARE_DYNAMIC_MULTICAST_DELEGATE_FourParams(FComponentEndOverlapSignature, UPrimitiveComponent*, OverlappedComponent,
	AActor*, OtherActor, UPrimitiveComponent*, OtherComp, int32, OtherBodyIndex);

/** A component with a shape. Nothing collides here: the events below come from whoever broadcasts them. */
UCLASS(Abstract, HideCategories = (Mobility, VirtualTexture), ShowCategories = ("Mesh|SkeletalAsset"))
class ENGINE_API UPrimitiveComponent : public USceneComponent
{
	GENERATED_BODY()

public:
	UPROPERTY(BlueprintAssignable, Category = "Collision")
	FComponentHitSignature OnComponentHit;

	UPROPERTY(BlueprintAssignable, Category = "Collision")
	FComponentBeginOverlapSignature OnComponentBeginOverlap;

	UPROPERTY(BlueprintAssignable, Category = "Collision")
	FComponentEndOverlapSignature OnComponentEndOverlap;
};
