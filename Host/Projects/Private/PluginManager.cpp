#include "CoreGlobals.h"
#include "HAL/FileManager.h"
#include "HostModuleManifest.h"
#include "Interfaces/IPluginManager.h"
#include "Interfaces/IProjectManager.h"
#include "Misc/CommandLine.h"
#include "Misc/Parse.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"

DEFINE_LOG_CATEGORY_STATIC(LogPluginManager, Log, All);

namespace PluginManager
{
class FPlugin final : public IPlugin
{
public:
	FPlugin(const FString& InFileName, const FPluginDescriptor& InDescriptor, bool bInEnabled)
		: FileName(InFileName)
		, BaseDir(FPaths::GetPath(InFileName))
		, Name(FPaths::GetBaseFilename(InFileName))
		, Descriptor(InDescriptor)
		, bEnabled(bInEnabled)
	{
	}

	const FString& GetName() const override { return Name; }
	const FString& GetDescriptorFileName() const override { return FileName; }
	const FString& GetBaseDir() const override { return BaseDir; }
	FString GetContentDir() const override { return BaseDir / TEXT("Content"); }
	bool IsEnabled() const override { return bEnabled; }
	const FPluginDescriptor& GetDescriptor() const override { return Descriptor; }
	void Disable() { bEnabled = false; }
	/** Its module is part of the editor, and there is no file. */
	bool IsBuiltIn() const { return BaseDir.IsEmpty(); }

private:
	const FString FileName;
	const FString BaseDir;
	const FString Name;
	const FPluginDescriptor Descriptor;
	bool bEnabled;
};

/** What the engine has as plugins of its own is part of this editor. Each is a module of the same name. */
constexpr const TCHAR* BuiltInPlugins[] = { TEXT("PythonScriptPlugin"), TEXT("EditorScriptingUtilities") };

/** Descriptors below a folder; a folder that is a plugin is not searched further. */
void FindDescriptors(const FString& Directory, TArray<FString>& OutFiles)
{
	TArray<FString> Found;
	IFileManager::Get().FindFiles(Found, *(Directory / TEXT("*.uplugin")), true, false);
	if (!Found.IsEmpty())
	{
		OutFiles.Add(Directory / Found[0]);
		return;
	}
	TArray<FString> Children;
	IFileManager::Get().FindFiles(Children, *(Directory / TEXT("*")), false, true);
	Children.Sort();
	for (const FString& Child : Children)
	{
		FindDescriptors(Directory / Child, OutFiles);
	}
}

/** Tells the module manager in which libraries the plugin's modules lie. */
void AnnounceLibraries(const IPlugin& Plugin)
{
	FHostModuleManifest Manifest;
	if (!Manifest.Load(Plugin.GetBaseDir()))
	{
		UE_LOG(LogPluginManager, Warning, TEXT("Plugin '%s' has not been built for this editor: there is no %s"),
			*Plugin.GetName(), *FHostModuleManifest::GetFileName(Plugin.GetBaseDir()));
		return;
	}
	Manifest.Announce(Plugin.GetBaseDir());
}

class FPluginManager final : public IPluginManager
{
public:
	using IPluginManager::FindPlugin;

	TSharedPtr<IPlugin> FindPlugin(const FStringView Name) override
	{
		EnsureDiscovered();
		const TSharedRef<FPlugin>* Found = Plugins.FindByPredicate(
			[Name](const TSharedRef<FPlugin>& Plugin) { return Plugin->IsEnabled() && Plugin->GetName() == Name; });
		return Found ? TSharedPtr<IPlugin>(*Found) : nullptr;
	}

	TArray<TSharedRef<IPlugin>> GetEnabledPlugins() override
	{
		EnsureDiscovered();
		TArray<TSharedRef<IPlugin>> Enabled;
		for (const TSharedRef<FPlugin>& Plugin : Plugins)
		{
			if (Plugin->IsEnabled())
			{
				Enabled.Add(Plugin);
			}
		}
		return Enabled;
	}

	void RefreshPluginsList() override
	{
		bDiscovered = true;
		Plugins.Empty();
		FString FromCommandLine;
		if (FParse::Value(FCommandLine::Get(), TEXT("-PLUGIN="), FromCommandLine))
		{
			Add(FPaths::ConvertRelativePathToFull(FromCommandLine), true);
		}
		TArray<FString> Files;
		FindDescriptors(FPaths::ProjectPluginsDir(), Files);
		for (const FString& File : Files)
		{
			Add(File, false);
		}
		AddBuiltInPlugins();
		while (DisableWhatMissesAnother())
		{
			// One that is disabled may have been what yet another needs.
		}
		for (const TSharedRef<FPlugin>& Plugin : Plugins)
		{
			if (Plugin->IsEnabled() && !Plugin->IsBuiltIn())
			{
				AnnounceLibraries(*Plugin);
			}
			if (Plugin->IsEnabled() && Plugin->GetDescriptor().bCanContainContent)
			{
				RegisterMountPoint.ExecuteIfBound(TEXT("/") + Plugin->GetName() + TEXT("/"),
					FPaths::ConvertRelativePathToFull(Plugin->GetContentDir()));
			}
		}
	}

	void SetRegisterMountPointDelegate(const FRegisterMountPointDelegate& Delegate) override
	{
		RegisterMountPoint = Delegate;
	}

	bool LoadModulesForEnabledPlugins(ELoadingPhase::Type LoadingPhase) override
	{
		bool bAllLoaded = true;
		for (const TSharedRef<IPlugin>& Plugin : GetEnabledPlugins())
		{
			for (const FModuleDescriptor& Module : Plugin->GetDescriptor().Modules)
			{
				if (Module.LoadingPhase == LoadingPhase && Module.IsLoadedInEditor())
				{
					bAllLoaded &= FModuleManager::Get().LoadModule(Module.Name) != nullptr;
				}
			}
		}
		return bAllLoaded;
	}

private:
	void EnsureDiscovered()
	{
		if (!bDiscovered)
		{
			RefreshPluginsList();
		}
	}

	/** One that the command line names comes first, and a second of the same name is left out. */
	void Add(const FString& File, bool bForceEnabled)
	{
		FPluginDescriptor Descriptor;
		FText FailReason;
		if (!Descriptor.Load(File, FailReason))
		{
			UE_LOG(LogPluginManager, Error, TEXT("Plugin left out: %s"), *FailReason.ToString());
			return;
		}
		const FString Name = FPaths::GetBaseFilename(File);
		if (Plugins.ContainsByPredicate(
				[&Name](const TSharedRef<FPlugin>& Plugin) { return Plugin->GetName() == Name; }))
		{
			UE_LOG(LogPluginManager, Warning, TEXT("Plugin '%s' was found twice; %s is left out"), *Name, *File);
			return;
		}
		Plugins.Add(
			MakeShared<FPlugin>(File, Descriptor, bForceEnabled || IsWanted(Name, Descriptor.bEnabledByDefault)));
	}

	/** What the project says, or else the plugin itself. */
	static bool IsWanted(const FString& Name, bool bByDefault)
	{
		const FProjectDescriptor* Project = IProjectManager::Get().GetCurrentProject();
		const bool* bWanted = Project ? Project->PluginsEnabled.Find(Name) : nullptr;
		return bWanted ? *bWanted : bByDefault;
	}

	void AddBuiltInPlugins()
	{
		for (const TCHAR* Name : BuiltInPlugins)
		{
			if (FModuleManager::Get().ModuleExists(Name))
			{
				FPluginDescriptor Descriptor;
				Descriptor.FriendlyName = Name;
				FModuleDescriptor& Module = Descriptor.Modules.AddDefaulted_GetRef();
				Module.Name = Name;
				Module.Type = EHostType::UncookedOnly;
				Module.LoadingPhase = ELoadingPhase::PreDefault;
				Plugins.Add(MakeShared<FPlugin>(Name, Descriptor, IsWanted(Name, true)));
			}
		}
	}

	/** Disables a plugin that needs another one which is not there. False when all have what they need. */
	bool DisableWhatMissesAnother()
	{
		for (const TSharedRef<FPlugin>& Plugin : Plugins)
		{
			for (const FPluginReferenceDescriptor& Needed : Plugin->GetDescriptor().Plugins)
			{
				if (Plugin->IsEnabled() && Needed.bEnabled && !Needed.bOptional && !FindPlugin(Needed.Name))
				{
					UE_LOG(LogPluginManager, Error,
						TEXT("Plugin '%s' left out: it needs the plugin '%s', which is not there"), *Plugin->GetName(),
						*Needed.Name);
					Plugin->Disable();
					return true;
				}
			}
		}
		return false;
	}

	FRegisterMountPointDelegate RegisterMountPoint;
	TArray<TSharedRef<FPlugin>> Plugins;
	bool bDiscovered = false;
};
}

IPluginManager& IPluginManager::Get()
{
	static PluginManager::FPluginManager Manager;
	return Manager;
}
