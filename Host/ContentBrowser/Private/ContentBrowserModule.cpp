#include "Framework/Docking/TabManager.h"
#include "Modules/ModuleManager.h"
#include "SContentBrowser.h"
#include "Widgets/Docking/SDockTab.h"

#define LOCTEXT_NAMESPACE "ContentBrowser"

namespace ContentBrowserModule
{
const FName TabName("ContentBrowserTab1");
}

/** Shows the project's assets in the tab "ContentBrowserTab1". */
class FContentBrowserModule final : public IModuleInterface
{
public:
	void StartupModule() override
	{
		FGlobalTabmanager::Get()
			->RegisterNomadTabSpawner(
				ContentBrowserModule::TabName, FOnSpawnTab::CreateStatic(&FContentBrowserModule::SpawnTab))
			.SetDisplayName(LOCTEXT("TabTitle", "Content Browser"))
			.SetTooltipText(LOCTEXT("TabTip", "The assets of this project"));
	}
	void ShutdownModule() override
	{
		FGlobalTabmanager::Get()->UnregisterNomadTabSpawner(ContentBrowserModule::TabName);
	}

private:
	static TSharedRef<SDockTab> SpawnTab(const FSpawnTabArgs& Args)
	{
		return SNew(SDockTab).TabRole(ETabRole::NomadTab)[SNew(SContentBrowser)];
	}
};

#undef LOCTEXT_NAMESPACE

IMPLEMENT_MODULE(FContentBrowserModule, ContentBrowser)
