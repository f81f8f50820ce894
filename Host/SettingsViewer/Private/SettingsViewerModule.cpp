#include "Framework/Docking/TabManager.h"
#include "ISettingsModule.h"
#include "ISettingsViewer.h"
#include "Modules/ModuleManager.h"
#include "SSettingsEditor.h"
#include "Widgets/Docking/SDockTab.h"

#define LOCTEXT_NAMESPACE "SettingsViewer"

namespace SettingsViewer
{
const FName ContainerName("Project");
const FName TabName("ProjectSettings");
}

/** The tab "ProjectSettings", which shows the settings of the container "Project". */
class FSettingsViewerModule final : public IModuleInterface, public ISettingsViewer
{
public:
	void StartupModule() override
	{
		FModuleManager::LoadModuleChecked<ISettingsModule>("Settings")
			.RegisterViewer(SettingsViewer::ContainerName, *this);
		FGlobalTabmanager::Get()
			->RegisterNomadTabSpawner(
				SettingsViewer::TabName, FOnSpawnTab::CreateRaw(this, &FSettingsViewerModule::SpawnTab))
			.SetDisplayName(LOCTEXT("TabTitle", "Project Settings"))
			.SetMenuType(ETabSpawnerMenuType::Hidden);
	}

	void ShutdownModule() override
	{
		FGlobalTabmanager::Get()->UnregisterNomadTabSpawner(SettingsViewer::TabName);
		if (ISettingsModule* const Settings = FModuleManager::GetModulePtr<ISettingsModule>("Settings"))
		{
			Settings->UnregisterViewer(SettingsViewer::ContainerName);
		}
	}

	void ShowSettings(const FName& CategoryName, const FName& SectionName) override
	{
		const TSharedPtr<SDockTab> Tab = FGlobalTabmanager::Get()->TryInvokeTab(SettingsViewer::TabName);
		if (const TSharedPtr<SSettingsEditor> Shown = Editor.Pin(); Tab.IsValid() && Shown.IsValid())
		{
			Shown->Select(CategoryName, SectionName);
		}
	}

private:
	TSharedRef<SDockTab> SpawnTab(const FSpawnTabArgs& Args)
	{
		const TSharedPtr<ISettingsContainer> Container =
			FModuleManager::LoadModuleChecked<ISettingsModule>("Settings").GetContainer(SettingsViewer::ContainerName);
		const TSharedRef<SSettingsEditor> NewEditor = SNew(SSettingsEditor, Container);
		Editor = NewEditor;
		return SNew(SDockTab).TabRole(ETabRole::NomadTab)[NewEditor];
	}

	TWeakPtr<SSettingsEditor> Editor;
};

#undef LOCTEXT_NAMESPACE

IMPLEMENT_MODULE(FSettingsViewerModule, SettingsViewer)
