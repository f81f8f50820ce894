#include "AssetDefinition.h"

FText UAssetDefinition::GetAssetDisplayName() const
{
	const UClass* const Class = GetAssetClass().Get();
	return Class ? Class->GetDisplayNameText() : FText::GetEmpty();
}

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
