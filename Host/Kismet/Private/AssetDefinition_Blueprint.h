#pragma once

#include "AssetDefinition.h"
#include "AssetDefinition_Blueprint.generated.h"

/** Blueprints are shown by their editor. */
UCLASS()
class UAssetDefinition_Blueprint : public UAssetDefinition
{
	GENERATED_BODY()

public:
	FLinearColor GetAssetColor() const override;
	TSoftClassPtr<UObject> GetAssetClass() const override;
	EAssetCommandResult OpenAssets(const FAssetOpenArgs& OpenArgs) const override;
};
