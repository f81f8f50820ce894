#include "AssetDefinition.h"

FLinearColor UAssetDefinition::GetAssetColor() const
{
	return FLinearColor::White;
}

TSoftClassPtr<UObject> UAssetDefinition::GetAssetClass() const
{
	return nullptr;
}

EAssetCommandResult UAssetDefinition::OpenAssets(const FAssetOpenArgs&) const
{
	return EAssetCommandResult::Unhandled;
}
