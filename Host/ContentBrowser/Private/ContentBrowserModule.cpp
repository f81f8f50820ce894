#include "ContentBrowserModule.h"

#include "Framework/Docking/TabManager.h"
#include "Modules/ModuleManager.h"
#include "SContentBrowser.h"
#include "Widgets/Docking/SDockTab.h"

#define LOCTEXT_NAMESPACE "ContentBrowser"

namespace ContentBrowserModule
{
const FName TabName("ContentBrowserTab1");
}

void FContentBrowserModule::StartupModule()
{
	FGlobalTabmanager::Get()
		->RegisterNomadTabSpawner(
			ContentBrowserModule::TabName, FOnSpawnTab::CreateRaw(this, &FContentBrowserModule::SpawnTab))
		.SetDisplayName(LOCTEXT("TabTitle", "Content Browser"))
		.SetTooltipText(LOCTEXT("TabTip", "The assets of this project"));
}

void FContentBrowserModule::ShutdownModule()
{
	FGlobalTabmanager::Get()->UnregisterNomadTabSpawner(ContentBrowserModule::TabName);
}

TSharedRef<SDockTab> FContentBrowserModule::SpawnTab(const FSpawnTabArgs& Args)
{
	const TSharedRef<SContentBrowser> NewBrowser = SNew(SContentBrowser);
	Browser = NewBrowser;
	return SNew(SDockTab).TabRole(ETabRole::NomadTab)[NewBrowser];
}

void FContentBrowserModule::GetSelectedAssets(TArray<FAssetData>& SelectedAssets)
{
	if (const TSharedPtr<SContentBrowser> Pinned = Browser.Pin())
	{
		Pinned->GetSelectedAssets(SelectedAssets);
	}
}

#undef LOCTEXT_NAMESPACE

IMPLEMENT_MODULE(FContentBrowserModule, ContentBrowser)
