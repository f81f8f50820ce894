#pragma once

#include "Components/MeshComponent.h"
#include "SkinnedMeshComponent.generated.h"

/** A mesh that bones move. */
UCLASS(Abstract, HideCategories = Object)
class ENGINE_API USkinnedMeshComponent : public UMeshComponent
{
	GENERATED_BODY()
};
