#include "Misc/HotReloadInterface.h"

#include "Modules/ModuleManager.h"

IHotReloadInterface* IHotReloadInterface::GetPtr()
{
	return FModuleManager::GetModulePtr<IHotReloadInterface>("HotReload");
}
