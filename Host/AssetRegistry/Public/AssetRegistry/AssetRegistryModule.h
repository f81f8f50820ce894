#pragma once

#include "AssetRegistry/IAssetRegistry.h"
#include "Modules/ModuleInterface.h"
#include "Modules/ModuleManager.h"

/** The way to the registry that loads it if need be. */
class FAssetRegistryModule : public IModuleInterface
{
public:
	virtual IAssetRegistry& Get() const = 0;

	static IAssetRegistry& GetRegistry()
	{
		return FModuleManager::LoadModuleChecked<FAssetRegistryModule>("AssetRegistry").Get();
	}
	/** To be called of each asset that was made, is about to be deleted, or has got another name. */
	static void AssetCreated(UObject* NewAsset) { GetRegistry().AssetCreated(NewAsset); }
	static void AssetDeleted(UObject* DeletedAsset) { GetRegistry().AssetDeleted(DeletedAsset); }
	static void AssetRenamed(const UObject* RenamedAsset, const FString& OldObjectPath)
	{
		GetRegistry().AssetRenamed(RenamedAsset, OldObjectPath);
	}
};
