#pragma once

#include "IAssetTools.h"
#include "Modules/ModuleInterface.h"
#include "Modules/ModuleManager.h"

/** The way to the asset tools that loads them if need be. */
class FAssetToolsModule : public IModuleInterface
{
public:
	static FAssetToolsModule& GetModule() { return FModuleManager::LoadModuleChecked<FAssetToolsModule>("AssetTools"); }
	virtual IAssetTools& Get() const = 0;
};
