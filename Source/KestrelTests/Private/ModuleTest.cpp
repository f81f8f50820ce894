#include "Agent/Agent.h"
#include "Agent/Backend/HTTPAPI.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Containers/Ticker.h"
#include "Framework/Docking/TabManager.h"
#include "Kestrel.h"
#include "Modules/ModuleManager.h"
#include "Styling/SlateStyleRegistry.h"
#include "Support/KestrelTest.h"
#include "ToolMenus.h"
#include "Widget/KestrelStyle.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/SCompoundWidget.h"

namespace ModuleTest
{
const FTabId TabId(FName("Kestrel"));

bool HasStyle()
{
	return FSlateStyleRegistry::FindSlateStyle(FKestrelStyle::GetStyleSetName()) != nullptr;
}

bool HasMenus()
{
	const bool bButton = UToolMenus::Get()
							 ->ExtendMenu("LevelEditor.LevelEditorToolBar.PlayToolBar")
							 ->FindOrAddSection("PluginTools")
							 .FindEntry("LevelToolbarKestrel") != nullptr;
	const bool bEntry = UToolMenus::Get()
							->ExtendMenu("LevelEditor.MainMenu.Window")
							->FindOrAddSection("WindowLayout")
							.FindEntry("OpenPluginWindow") != nullptr;
	return bButton && bEntry;
}

/** A part of the panel that looks for the brushes when it goes. */
class SProbe : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SProbe) {}
	SLATE_ARGUMENT(TSharedPtr<bool>, HadStyle)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) { HadStyle = InArgs._HadStyle; }
	virtual ~SProbe() override { *HadStyle = HasStyle(); }

private:
	TSharedPtr<bool> HadStyle;
};

/** Shuts the module down in the middle of a turn, starts it again, and goes through a conversation. */
class FRestart : public IAutomationLatentCommand
{
public:
	explicit FRestart(FAutomationTestBase& InTest)
		: Test(InTest)
		, Module(FModuleManager::GetModuleChecked<FKestrelModule>("Kestrel"))
	{
	}

	virtual bool Update() override
	{
		const EAgentState State = FAgent::Get().GetAgentState();
		if (NumRestarts < MaxRestarts)
		{
			if (State == EAgentState::Idle)
			{
				FKestrelInterface::Get().InitialRequest(TEXT("script hello"));
			}
			// Once with a command in flight, once while it polls.
			if (NumRestarts == 0 || FHTTPAPI::Get().IsPolling())
			{
				Restart();
			}
			return false;
		}
		if (!Recorder.IsValid())
		{
			Recorder = MakeShared<FKestrelPanelRecorder>();
			FKestrelInterface::Get().InitialRequest(TEXT("script hello"));
		}
		if (!KestrelTest::IsWaitingForUser(FAgent::Get().GetAgentState()))
		{
			return false;
		}
		KestrelTest::TestSameText(Test, TEXT("the next conversation"), FString::Join(Recorder->GetTexts(), TEXT("|")),
			TEXT(" [ User Start ]\n\nscript hello\n|Sending request...|Processing request...| [ Kestrel ] "
				 "\n\nHello.\n"));
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		return true;
	}

private:
	void Restart()
	{
		const TSharedRef<bool> HadStyle = MakeShared<bool>(false);
		TWeakPtr<SWidget> Panel;
		if (const TSharedPtr<SDockTab> Tab = FGlobalTabmanager::Get()->TryInvokeTab(TabId))
		{
			Panel = Tab->GetContent();
			if (NumRestarts > 0)
			{
				Tab->SetContent(SNew(SProbe).HadStyle(HadStyle.ToSharedPtr()));
			}
		}
		Test.TestTrue(TEXT("the panel is open"), Panel.IsValid() || NumRestarts > 0);

		Module.ShutdownModule();
		Test.TestTrue(TEXT("idle"), FAgent::Get().GetAgentState() == EAgentState::Idle);
		Test.TestFalse(TEXT("polls"), FHTTPAPI::Get().IsPolling());
		Test.TestTrue(TEXT("request forgotten"), FHTTPAPI::Get().GetRequestId().IsEmpty());
		Test.TestFalse(TEXT("panel left"), Panel.IsValid());
		Test.TestTrue(TEXT("the panel goes before its brushes"), NumRestarts == 0 || *HadStyle);
		Test.TestFalse(TEXT("style left"), HasStyle());
		Test.TestFalse(TEXT("tab left"), FGlobalTabmanager::Get()->HasTabSpawner(TabId.TabType));
		Test.TestFalse(TEXT("menus left"), HasMenus());

		Module.StartupModule();
		Test.TestTrue(TEXT("idle again"), FAgent::Get().GetAgentState() == EAgentState::Idle);
		Test.TestTrue(TEXT("style"), HasStyle());
		Test.TestTrue(TEXT("tab"), FGlobalTabmanager::Get()->HasTabSpawner(TabId.TabType));
		Test.TestTrue(TEXT("menus"), HasMenus());
		++NumRestarts;
	}

	static constexpr int32 MaxRestarts = 2;

	FAutomationTestBase& Test;
	FKestrelModule& Module;
	int32 NumRestarts = 0;
	TSharedPtr<FKestrelPanelRecorder> Recorder;
};
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelModuleTest, "Kestrel.Module.Can be reloaded in the middle of a conversation", KestrelTest::Flags)

bool FKestrelModuleTest::RunTest(const FString& Parameters)
{
	FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
	ADD_LATENT_AUTOMATION_COMMAND(ModuleTest::FRestart(*this));
	return true;
}
