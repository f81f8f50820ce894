#pragma once

#include "Components/SkinnedMeshComponent.h"
#include "SkeletalMeshComponent.generated.h"

/** An animated mesh. */
UCLASS(ClassGroup = (Rendering, Common), HideCategories = Object, Config = Engine, EditInlineNew,
	meta = (BlueprintSpawnableComponent))
class ENGINE_API USkeletalMeshComponent : public USkinnedMeshComponent
{
	GENERATED_BODY()
};
