#pragma once

#include "Components/ShapeComponent.h"
#include "CapsuleComponent.generated.h"

/** An upright cylinder with half a sphere at each end. The half height reaches to the tip; it is no less than the
 * radius. */
UCLASS(ClassGroup = "Collision", EditInlineNew, meta = (DisplayName = "Capsule Collision", BlueprintSpawnableComponent))
class ENGINE_API UCapsuleComponent : public UShapeComponent
{
	GENERATED_BODY()

public:
	/** For constructors. */
	void InitCapsuleSize(float InRadius, float InHalfHeight) { SetCapsuleSize(InRadius, InHalfHeight); }

	UFUNCTION(BlueprintCallable, Category = "Components|Capsule")
	void SetCapsuleSize(float InRadius, float InHalfHeight, bool bUpdateOverlaps = true);
	UFUNCTION(BlueprintCallable, Category = "Components|Capsule")
	float GetUnscaledCapsuleRadius() const { return CapsuleRadius; }
	UFUNCTION(BlueprintCallable, Category = "Components|Capsule")
	float GetUnscaledCapsuleHalfHeight() const { return CapsuleHalfHeight; }

protected:
	/** Centimetres, as the radius. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Shape", meta = (ClampMin = "0", UIMin = "0"))
	float CapsuleHalfHeight = 44.0f;

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Shape", meta = (ClampMin = "0", UIMin = "0"))
	float CapsuleRadius = 22.0f;
};
