#include "Framework/Docking/TabManager.h"
#include "Modules/ModuleManager.h"
#include "OutputLogHistory.h"
#include "SOutputLog.h"
#include "Widgets/Docking/SDockTab.h"

#define LOCTEXT_NAMESPACE "OutputLog"

namespace OutputLog
{
const FName TabName("OutputLog");
}

/** Keeps the log from the start, and shows it in the tab "OutputLog". */
class FOutputLogModule final : public IModuleInterface
{
public:
	void StartupModule() override
	{
		History = MakeShared<FOutputLogHistory>();
		FGlobalTabmanager::Get()
			->RegisterNomadTabSpawner(OutputLog::TabName, FOnSpawnTab::CreateRaw(this, &FOutputLogModule::SpawnTab))
			.SetDisplayName(LOCTEXT("TabTitle", "Output Log"))
			.SetTooltipText(LOCTEXT("TabTip", "What the editor and its plugins report"));
	}

	void ShutdownModule() override
	{
		FGlobalTabmanager::Get()->UnregisterNomadTabSpawner(OutputLog::TabName);
		History.Reset();
	}

private:
	TSharedRef<SDockTab> SpawnTab(const FSpawnTabArgs& Args)
	{
		return SNew(SDockTab).TabRole(ETabRole::NomadTab)[SNew(SOutputLog, History.ToSharedRef())];
	}

	TSharedPtr<FOutputLogHistory> History;
};

#undef LOCTEXT_NAMESPACE

IMPLEMENT_MODULE(FOutputLogModule, OutputLog)
