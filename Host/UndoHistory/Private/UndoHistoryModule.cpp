#include "Framework/Docking/TabManager.h"
#include "Modules/ModuleManager.h"
#include "SUndoHistory.h"
#include "Widgets/Docking/SDockTab.h"

#define LOCTEXT_NAMESPACE "UndoHistory"

namespace UndoHistory
{
const FName TabName("UndoHistory");
}

/** Shows the editor's transactions in the tab "UndoHistory". */
class FUndoHistoryModule final : public IModuleInterface
{
public:
	void StartupModule() override
	{
		FGlobalTabmanager::Get()
			->RegisterNomadTabSpawner(UndoHistory::TabName, FOnSpawnTab::CreateStatic(&FUndoHistoryModule::SpawnTab))
			.SetDisplayName(LOCTEXT("TabTitle", "Undo History"))
			.SetTooltipText(LOCTEXT("TabTip", "What was changed, to go back to any point"));
	}
	void ShutdownModule() override { FGlobalTabmanager::Get()->UnregisterNomadTabSpawner(UndoHistory::TabName); }

private:
	static TSharedRef<SDockTab> SpawnTab(const FSpawnTabArgs& Args)
	{
		return SNew(SDockTab).TabRole(ETabRole::NomadTab)[SNew(SUndoHistory)];
	}
};

#undef LOCTEXT_NAMESPACE

IMPLEMENT_MODULE(FUndoHistoryModule, UndoHistory)
