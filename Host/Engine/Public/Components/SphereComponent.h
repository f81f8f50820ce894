#pragma once

#include "Components/ShapeComponent.h"
#include "SphereComponent.generated.h"

UCLASS(ClassGroup = "Collision", EditInlineNew, meta = (DisplayName = "Sphere Collision", BlueprintSpawnableComponent))
class ENGINE_API USphereComponent : public UShapeComponent
{
	GENERATED_BODY()

public:
	/** For constructors. */
	void InitSphereRadius(float InSphereRadius) { SphereRadius = InSphereRadius; }

	UFUNCTION(BlueprintCallable, Category = "Components|Sphere")
	void SetSphereRadius(float InSphereRadius, bool bUpdateOverlaps = true) { SphereRadius = InSphereRadius; }
	UFUNCTION(BlueprintCallable, Category = "Components|Sphere")
	float GetUnscaledSphereRadius() const { return SphereRadius; }
	/** By the smallest of the three scales. */
	UFUNCTION(BlueprintCallable, Category = "Components|Sphere")
	float GetScaledSphereRadius() const;

protected:
	/** Centimetres. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Shape", meta = (ClampMin = "0", UIMin = "0"))
	float SphereRadius = 32.0f;
};
