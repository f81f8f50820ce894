#pragma once

#include "CoreMinimal.h"
#include "IContentBrowserSingleton.h"
#include "Modules/ModuleInterface.h"

class FSpawnTabArgs;
class SContentBrowser;
class SDockTab;

/** Shows the project's assets in the tab "ContentBrowserTab1". */
class FContentBrowserModule : public IModuleInterface, private IContentBrowserSingleton
{
public:
	virtual void StartupModule() override;
	virtual void ShutdownModule() override;

	IContentBrowserSingleton& Get() { return *this; }

private:
	virtual void GetSelectedAssets(TArray<FAssetData>& SelectedAssets) override;
	TSharedRef<SDockTab> SpawnTab(const FSpawnTabArgs& Args);

	TWeakPtr<SContentBrowser> Browser;
};
