#pragma once

#include "Components/PrimitiveComponent.h"
#include "MeshComponent.generated.h"

/** A component made of triangles. There are no meshes here, only the classes that a game's own ones derive from. */
UCLASS(Abstract, ShowCategories = (VirtualTexture))
class ENGINE_API UMeshComponent : public UPrimitiveComponent
{
	GENERATED_BODY()
};
