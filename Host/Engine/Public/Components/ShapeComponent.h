#pragma once

#include "Components/PrimitiveComponent.h"
#include "ShapeComponent.generated.h"

/** A plain shape. */
UCLASS(Abstract, HideCategories = (Object, LOD, Lighting, TextureStreaming, Activation, "Components|Activation"),
	EditInlineNew, meta = (BlueprintSpawnableComponent))
class ENGINE_API UShapeComponent : public UPrimitiveComponent
{
	GENERATED_BODY()
};
