#pragma once

#include "Components/SceneComponent.h"
#include "CameraComponent.generated.h"

/** A place to look from. Nothing is rendered here. */
UCLASS(HideCategories = (Mobility, Rendering, LOD), Blueprintable, ClassGroup = Camera,
	meta = (BlueprintSpawnableComponent))
class ENGINE_API UCameraComponent : public USceneComponent
{
	GENERATED_BODY()

public:
	/** Degrees, across the width. */
	UPROPERTY(Interp, EditAnywhere, BlueprintReadWrite, Category = "CameraSettings",
		meta = (UIMin = "5.0", UIMax = "170", ClampMin = "0.001", ClampMax = "360.0", Units = deg))
	float FieldOfView = 90.0f;

	/** Width divided by height. */
	UPROPERTY(Interp, EditAnywhere, BlueprintReadWrite, Category = "CameraSettings", meta = (ClampMin = "0.1"))
	float AspectRatio = 1.777778f;

	UFUNCTION(BlueprintCallable, Category = "Camera")
	virtual void SetFieldOfView(float InFieldOfView) { FieldOfView = InFieldOfView; }
	UFUNCTION(BlueprintCallable, Category = "Camera")
	void SetAspectRatio(float InAspectRatio) { AspectRatio = InAspectRatio; }
};
