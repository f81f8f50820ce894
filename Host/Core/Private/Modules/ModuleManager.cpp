#include "Modules/ModuleManager.h"

#include "Containers/StringConv.h"
#include "CoreGlobals.h"

#include <dlfcn.h>

DEFINE_LOG_CATEGORY_STATIC(LogModuleManager, Log, All);

FModuleManager& FModuleManager::Get()
{
	// Never destroyed: modules register from static initialisers of any library.
	static FModuleManager* Manager = new FModuleManager;
	return *Manager;
}

void FModuleManager::RegisterStaticallyLinkedModule(const FName InModuleName, FInitializeModule Initialize)
{
	Modules.FindOrAdd(InModuleName).Initialize = Initialize;
}

void FModuleManager::AddModuleLibrary(const FName InModuleName, const FString& LibraryPath)
{
	Modules.FindOrAdd(InModuleName).LibraryPath = LibraryPath;
}

bool FModuleManager::IsModuleLoaded(const FName InModuleName) const
{
	const FModuleInfo* Info = Modules.Find(InModuleName);
	return Info && Info->Module;
}

bool FModuleManager::ModuleExists(const FName InModuleName) const
{
	return Modules.Contains(InModuleName);
}

IModuleInterface* FModuleManager::GetModule(const FName InModuleName)
{
	const FModuleInfo* Info = Modules.Find(InModuleName);
	return Info ? Info->Module : nullptr;
}

bool FModuleManager::LoadLibrary(const FName InModuleName, const FString& LibraryPath)
{
	if (!dlopen(TCHAR_TO_UTF8(*LibraryPath), RTLD_NOW | RTLD_LOCAL))
	{
		UE_LOG(LogModuleManager, Error, TEXT("Module '%s' cannot be loaded: %hs"), *InModuleName.ToString(), dlerror());
		return false;
	}
	return true;
}

IModuleInterface* FModuleManager::LoadModule(const FName InModuleName)
{
	checkf(IsInGameThread(), TEXT("Modules are loaded on the game thread"));
	if (IModuleInterface* Loaded = GetModule(InModuleName))
	{
		return Loaded;
	}
	FModuleInfo* Info = Modules.Find(InModuleName);
	if (Info && !Info->Initialize && !LoadLibrary(InModuleName, FString(Info->LibraryPath)))
	{
		return nullptr;
	}
	// The library may have registered modules of its own: look again.
	Info = Modules.Find(InModuleName);
	if (!Info || !Info->Initialize)
	{
		UE_LOG(LogModuleManager, Warning, TEXT("Module '%s' was not found: no library of that name implements it"),
			*InModuleName.ToString());
		return nullptr;
	}

	return StartModule(InModuleName);
}

IModuleInterface* FModuleManager::StartModule(const FName InModuleName)
{
	ProcessLoadedObjectsCallback.Broadcast(InModuleName, true);
	IModuleInterface* Module = Modules.FindChecked(InModuleName).Initialize();
	Modules.FindChecked(InModuleName).Module = Module;
	LoadOrder.Add(InModuleName);
	Module->StartupModule();
	return Module;
}

bool FModuleManager::ReloadModule(const FName InModuleName, const FString& NewLibraryPath)
{
	checkf(IsInGameThread(), TEXT("Modules are loaded on the game thread"));
	checkf(IsModuleLoaded(InModuleName), TEXT("Module '%s' is not loaded"), *InModuleName.ToString());
	const FInitializeModule OldInitialize = Modules.FindChecked(InModuleName).Initialize;
	Modules.FindChecked(InModuleName).Initialize = nullptr;
	const bool bLoaded = LoadLibrary(InModuleName, NewLibraryPath);
	FModuleInfo& Info = Modules.FindChecked(InModuleName);
	if (!bLoaded || !Info.Initialize)
	{
		UE_CLOG(bLoaded, LogModuleManager, Error, TEXT("Module '%s' is not in %s"), *InModuleName.ToString(),
			*NewLibraryPath);
		Info.Initialize = OldInitialize;
		return false;
	}
	Info.LibraryPath = NewLibraryPath;
	UnloadModule(InModuleName);
	return StartModule(InModuleName) != nullptr;
}

IModuleInterface& FModuleManager::LoadModuleChecked(const FName InModuleName)
{
	IModuleInterface* Module = LoadModule(InModuleName);
	checkf(Module, TEXT("Module '%s' cannot be loaded"), *InModuleName.ToString());
	return *Module;
}

bool FModuleManager::UnloadModule(const FName InModuleName)
{
	FModuleInfo* Info = Modules.Find(InModuleName);
	if (!Info || !Info->Module)
	{
		return false;
	}
	IModuleInterface* Module = Info->Module;
	Module->PreUnloadCallback();
	Module->ShutdownModule();
	Modules.FindChecked(InModuleName).Module = nullptr;
	LoadOrder.Remove(InModuleName);
	delete Module;
	return true;
}

void FModuleManager::UnloadModulesAtShutdown()
{
	while (!LoadOrder.IsEmpty())
	{
		UnloadModule(FName(LoadOrder.Last()));
	}
}
