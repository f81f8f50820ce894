#pragma once

#include "CoreMinimal.h"
#include "Delegates/IDelegateInstance.h"
#include "Modules/ModuleInterface.h"
#include "Templates/UniquePtr.h"

class FKestrelNotifier;
class FSpawnTabArgs;
class FUICommandList;
class SDockTab;

/** The plugin's editor module: registers the settings page, the menu entries and the panel's tab. */
class KESTREL_API FKestrelModule : public IModuleInterface
{
public:
	FKestrelModule();
	virtual ~FKestrelModule() override;

	virtual void StartupModule() override;
	virtual void ShutdownModule() override;

	/** The key that goes with every request: the stage's own if it has one, else the user's, else empty. */
	static FString GetApiKey();
	/** Host and path of the service, without scheme and trailing slash. The user's settings never change it. */
	static FString GetApiUrl();
	/** Of that address, the host, with its port when it names one. */
	static FString GetApiHost();
	/** Whether the project names an address that is refused (see FKestrelStage), so that nothing may be sent. */
	static bool IsStageRefused() { return bStageRefused; }
	/** Whether it is the project, and not this build, that says where requests go. */
	static bool IsServiceOfProject() { return !StageApiUrl.IsEmpty(); }

	/** Whether the key is the project's: the user's own is not used then. */
	static bool IsKeyOfProject() { return !StageApiKey.IsEmpty(); }
	/** Shows the plugin's page of the project settings. */
	static void OpenSettings();

	/** Brings the panel's tab up, or to front. */
	void PluginButtonClicked();

private:
	void RegisterSettings();
	void UnregisterSettings();
	/** The command, the menus and the tab. */
	void RegisterUserInterface();
	void RegisterMenus();
	/** A person who is asked must see what they are asked. */
	void ShowCallThatAwaitsApproval();
	/** The panel's widgets are gone when it returns. */
	void ClosePanel();
	TSharedRef<SDockTab> OnSpawnPluginTab(const FSpawnTabArgs& SpawnTabArgs);
	/** Reads Config/DefaultPlugin.ini, which a project under development may use to name another service. */
	static void ReadStageConfiguration();

	static FString StageApiUrl;
	static FString StageApiKey;
	static bool bStageRefused;

	bool bHasUserInterface = false;
	TSharedPtr<FUICommandList> PluginCommands;
	FDelegateHandle ServerChangedHandle;
	TUniquePtr<FKestrelNotifier> Notifier;
	FDelegateHandle LayoutHandle;
};
