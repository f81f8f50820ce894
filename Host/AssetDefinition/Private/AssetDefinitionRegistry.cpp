#include "AssetDefinitionRegistry.h"

#include "UObject/UObjectHash.h"

const UAssetDefinitionRegistry* UAssetDefinitionRegistry::Get()
{
	return GetDefault<UAssetDefinitionRegistry>();
}

const UAssetDefinition* UAssetDefinitionRegistry::GetAssetDefinitionForClass(const UClass* Class) const
{
	TArray<UClass*> Kinds;
	GetDerivedClasses(UAssetDefinition::StaticClass(), Kinds);
	for (const UClass* Each = Class; Each; Each = Each->GetSuperClass())
	{
		for (UClass* const Kind : Kinds)
		{
			const UAssetDefinition* const Definition = GetDefault<UAssetDefinition>(Kind);
			if (Definition->GetAssetClass().Get() == Each)
			{
				return Definition;
			}
		}
	}
	return nullptr;
}

const UAssetDefinition* UAssetDefinitionRegistry::GetAssetDefinitionForAsset(const FAssetData& Asset) const
{
	return GetAssetDefinitionForClass(Asset.GetClass());
}
