#pragma once

#include "Containers/Array.h"
#include "Delegates/Delegate.h"
#include "PluginDescriptor.h"
#include "Templates/SharedPointer.h"

class IPlugin
{
public:
	virtual ~IPlugin() = default;
	/** The .uplugin file's base name. */
	virtual const FString& GetName() const = 0;
	virtual const FString& GetDescriptorFileName() const = 0;
	/** Without a trailing slash; may be relative to the executable's folder. */
	virtual const FString& GetBaseDir() const = 0;
	virtual FString GetContentDir() const = 0;
	virtual bool IsEnabled() const = 0;
	virtual const FPluginDescriptor& GetDescriptor() const = 0;
};

/** The plugins of the project, and those handed over on the command line ("-PLUGIN=<file.uplugin>"). */
class IPluginManager
{
public:
	DECLARE_DELEGATE_TwoParams(
		FRegisterMountPointDelegate, const FString& /*RootContentPath*/, const FString& /*ContentDir*/);

	static IPluginManager& Get();
	virtual ~IPluginManager() = default;

	/** Invalid when unknown or disabled. */
	virtual TSharedPtr<IPlugin> FindPlugin(const FStringView Name) = 0;
	TSharedPtr<IPlugin> FindPlugin(const ANSICHAR* Name) { return FindPlugin(FStringView(FString(Name))); }
	virtual TArray<TSharedRef<IPlugin>> GetEnabledPlugins() = 0;

	/** Searches for plugins again; broken descriptors are logged and skipped. */
	virtual void RefreshPluginsList() = 0;
	/** Told of each enabled plugin's content folder and of its root, "/<Plugin>/". */
	virtual void SetRegisterMountPointDelegate(const FRegisterMountPointDelegate& Delegate) = 0;
	/** Loads the modules of this phase. False when one of them cannot be loaded; the reason is in the log. */
	virtual bool LoadModulesForEnabledPlugins(ELoadingPhase::Type LoadingPhase) = 0;
};
