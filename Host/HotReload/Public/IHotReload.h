#pragma once

#include "Misc/HotReloadInterface.h"
#include "Modules/ModuleManager.h"

/** Access to the module by its own name. */
class IHotReloadModule : public IHotReloadInterface
{
public:
	/** Loads the module if need be. */
	static IHotReloadModule& Get() { return FModuleManager::LoadModuleChecked<IHotReloadModule>("HotReload"); }
	static bool IsAvailable() { return FModuleManager::Get().IsModuleLoaded("HotReload"); }
};
