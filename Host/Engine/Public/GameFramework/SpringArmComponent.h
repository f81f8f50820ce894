#pragma once

#include "Components/SceneComponent.h"
#include "SpringArmComponent.generated.h"

/**
 * Holds what is attached to it at a distance behind. Nothing collides here, so the arm always has its full length; and
 * it follows at once, without lag.
 */
UCLASS(ClassGroup = Camera, HideCategories = (Mobility), meta = (BlueprintSpawnableComponent))
class ENGINE_API USpringArmComponent : public USceneComponent
{
	GENERATED_BODY()

public:
	/** Centimetres from the arm's origin to its end. */
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Camera")
	float TargetArmLength = 300.0f;

	/** Of the end, in the arm's own space. */
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Camera")
	FVector SocketOffset;

	/** Of the origin, in world space. */
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Camera")
	FVector TargetOffset;

	/** Whether the arm turns with the controller of the pawn rather than with the pawn. */
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "CameraSettings")
	uint8 bUsePawnControlRotation : 1;

	USpringArmComponent(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** Of the arm in the world. */
	UFUNCTION(BlueprintCallable, Category = "SpringArm")
	FRotator GetTargetRotation() const;
	/** Where the arm ends, whatever the name. */
	FTransform GetSocketTransform(
		FName InSocketName, ERelativeTransformSpace TransformSpace = RTS_World) const override;

	/** "SpringEndpoint" */
	static const FName SocketName;
};
