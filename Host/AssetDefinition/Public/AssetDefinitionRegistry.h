#pragma once

#include "AssetDefinition.h"
#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "AssetDefinitionRegistry.generated.h"

/** Finds the definition of an asset among all classes of definitions that are loaded. */
UCLASS()
class ASSETDEFINITION_API UAssetDefinitionRegistry : public UObject
{
	GENERATED_BODY()

public:
	static const UAssetDefinitionRegistry* Get();

	/** That of the class, or of its nearest parent that has one. Null when there is none. */
	const UAssetDefinition* GetAssetDefinitionForClass(const UClass* Class) const;
	/** Null also for an asset whose class is not loaded. */
	const UAssetDefinition* GetAssetDefinitionForAsset(const FAssetData& Asset) const;
};
