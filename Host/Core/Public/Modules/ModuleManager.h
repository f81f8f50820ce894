#pragma once

#include "Containers/Array.h"
#include "Containers/Map.h"
#include "Delegates/Delegate.h"
#include "Modules/ModuleInterface.h"
#include "UObject/NameTypes.h"

DECLARE_MULTICAST_DELEGATE_TwoParams(
	FProcessLoadedObjects, FName /*ModuleName*/, bool /*bCanProcessNewlyLoadedObjects*/);

/**
 * Loads modules and shuts them down in reverse order.
 *
 * The host's own modules are linked into the editor; a plugin's or project's module is a shared library, whose file the
 * plugin manager announces.
 */
class FModuleManager
{
public:
	using FInitializeModule = IModuleInterface* (*)();

	static FModuleManager& Get();

	bool IsModuleLoaded(const FName InModuleName) const;
	/** True when the module can be loaded, or is. */
	bool ModuleExists(const FName InModuleName) const;
	/** Null when it cannot be loaded; the reason is in the log. */
	IModuleInterface* LoadModule(const FName InModuleName);
	IModuleInterface& LoadModuleChecked(const FName InModuleName);
	/** Null unless it is loaded already. */
	IModuleInterface* GetModule(const FName InModuleName);
	bool UnloadModule(const FName InModuleName);
	/**
	 * Puts new code in place of a loaded module's: the old module is shut down, the one in the new library starts. The
	 * old code stays in memory, since objects and delegates may still lead to it.
	 *
	 * @return false when the new library cannot be loaded; the old module goes on then, and the reason is in the log
	 */
	bool ReloadModule(const FName InModuleName, const FString& NewLibraryPath);
	/** Shuts down every module, the last loaded first. */
	void UnloadModulesAtShutdown();

	template <typename ModuleType>
	static ModuleType* GetModulePtr(const FName ModuleName)
	{
		return static_cast<ModuleType*>(Get().GetModule(ModuleName));
	}
	template <typename ModuleType>
	static ModuleType& GetModuleChecked(const FName ModuleName)
	{
		IModuleInterface* Module = Get().GetModule(ModuleName);
		checkf(Module, TEXT("Module '%s' is not loaded"), *ModuleName.ToString());
		return static_cast<ModuleType&>(*Module);
	}
	template <typename ModuleType>
	static ModuleType* LoadModulePtr(const FName ModuleName)
	{
		return static_cast<ModuleType*>(Get().LoadModule(ModuleName));
	}
	template <typename ModuleType>
	static ModuleType& LoadModuleChecked(const FName ModuleName)
	{
		return static_cast<ModuleType&>(Get().LoadModuleChecked(ModuleName));
	}

	/** Tells in which shared library a module lies. */
	void AddModuleLibrary(const FName InModuleName, const FString& LibraryPath);
	/** Called after a module's code has been loaded and before it starts, so that its reflected types are made. */
	FProcessLoadedObjects& OnProcessLoadedObjectsCallback() { return ProcessLoadedObjectsCallback; }
	void RegisterStaticallyLinkedModule(const FName InModuleName, FInitializeModule Initialize);

private:
	struct FModuleInfo
	{
		FInitializeModule Initialize = nullptr;
		FString LibraryPath;
		IModuleInterface* Module = nullptr;
	};

	bool LoadLibrary(const FName InModuleName, const FString& LibraryPath);
	IModuleInterface* StartModule(const FName InModuleName);

	TMap<FName, FModuleInfo> Modules;
	TArray<FName> LoadOrder;
	FProcessLoadedObjects ProcessLoadedObjectsCallback;
};

/** Registers a module when its library is loaded. A name that is not the library's own compiles, and fails at load. */
struct FModuleInitializerEntry
{
	FModuleInitializerEntry(const TCHAR* ModuleName, FModuleManager::FInitializeModule Initialize)
	{
		FModuleManager::Get().RegisterStaticallyLinkedModule(ModuleName, Initialize);
	}
};

#define IMPLEMENT_MODULE(ModuleImplClass, ModuleName)                                                                  \
	static FModuleInitializerEntry ModuleName##InitializerEntry(                                                       \
		TEXT(#ModuleName), []() -> IModuleInterface* { return new ModuleImplClass(); });
#define IMPLEMENT_GAME_MODULE(ModuleImplClass, ModuleName) IMPLEMENT_MODULE(ModuleImplClass, ModuleName)
#define IMPLEMENT_PRIMARY_GAME_MODULE(ModuleImplClass, ModuleName, GameName)                                           \
	IMPLEMENT_MODULE(ModuleImplClass, ModuleName)
