#include "AssetDefinition_Blueprint.h"

#include "BlueprintEditor.h"
#include "Engine/Blueprint.h"

FLinearColor UAssetDefinition_Blueprint::GetAssetColor() const
{
	return FColor(63, 126, 255);
}

TSoftClassPtr<UObject> UAssetDefinition_Blueprint::GetAssetClass() const
{
	return UBlueprint::StaticClass();
}

EAssetCommandResult UAssetDefinition_Blueprint::OpenAssets(const FAssetOpenArgs& OpenArgs) const
{
	for (UBlueprint* const Blueprint : OpenArgs.LoadObjects<UBlueprint>())
	{
		FBlueprintEditor::Open(*Blueprint);
	}
	return EAssetCommandResult::Handled;
}
