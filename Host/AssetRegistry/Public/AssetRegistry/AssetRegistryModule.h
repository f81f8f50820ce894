#pragma once

#include "AssetRegistry/IAssetRegistry.h"
#include "Modules/ModuleInterface.h"
#include "Modules/ModuleManager.h"

/** The way to the registry that loads it if need be. */
class FAssetRegistryModule : public IModuleInterface
{
public:
	virtual IAssetRegistry& Get() const = 0;
};
