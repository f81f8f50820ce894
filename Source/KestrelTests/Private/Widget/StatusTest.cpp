#include "Agent/Agent.h"
#include "Agent/Backend/HTTPAPI.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/RunStatus.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "Framework/Notifications/NotificationManager.h"
#include "GenericPlatform/GenericWindow.h"
#include "KestrelSettings.h"
#include "Support/KestrelTest.h"
#include "Support/TestPanel.h"
#include "UObject/Class.h"
#include "Widget/SKestrelWidget.h"
#include "Widget/Status/StatusText.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/SWidget.h"
#include "Widgets/SWindow.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

namespace StatusTest
{
void Enter(EAgentState State)
{
	FAgent::Get().SetAgentState(State, nullptr);
}

void BeginConversation()
{
	Enter(EAgentState::Idle);
	const FInitialRequestStateData Data(TEXT("script no-such-script"));
	FAgent::Get().SetAgentState(EAgentState::InitialRequest, &Data);
}

void Answer(const TCHAR* Blocks)
{
	FAgent::Get().HandlePollStatusRequestCompleted(
		KestrelJson::ParseObject(FString::Printf(TEXT("{\"auto_continue\":true,\"response\":[%s]}"), Blocks)));
}

/** An answer that runs tools at once: each one a name and its input. */
void RunTool(const TCHAR* Name, const TCHAR* Input)
{
	Enter(EAgentState::PollRequest);
	Answer(*FString::Printf(TEXT("{\"type\":\"tool_use\",\"id\":\"t\",\"name\":\"%s\",\"input\":%s}"), Name, Input));
}

void FailToChange(const TCHAR* OldString)
{
	RunTool(TEXT("update_file"),
		*FString::Printf(
			TEXT("{\"path\":\"NoSuchFolder/a.txt\",\"old_string\":\"%s\",\"new_string\":\"x\"}"), OldString));
}

void ReportStatus(const TCHAR* Status)
{
	FHTTPAPI::Get().OnPollStatusUpdate.ExecuteIfBound(TEXT("id"), TEXT("PROCESSING"), KestrelJson::ParseObject(Status));
}

FString Line()
{
	return KestrelStatusText::MakeLine().ToString();
}

/** What stands on shown text blocks, a line each. */
void CollectShownTexts(const TSharedRef<SWidget>& Widget, FString& Out)
{
	if (!Widget->GetVisibility().IsVisible())
	{
		return;
	}
	if (Widget->GetType() == FName("STextBlock"))
	{
		Out += StaticCastSharedRef<STextBlock>(Widget)->GetText().ToString() + TEXT("\n");
	}
	FChildren* Children = Widget->GetChildren();
	for (int32 Index = 0; Index < Children->Num(); ++Index)
	{
		CollectShownTexts(Children->GetChildAt(Index), Out);
	}
}

FString ShownTexts(const FKestrelTestPanel& Panel)
{
	FSlateApplication::Get().Tick();
	FString Texts;
	CollectShownTexts(Panel.Window, Texts);
	return Texts;
}

/** Whether something in the panel will change by itself. */
bool HasRunningTimers(const TSharedRef<SWidget>& Widget)
{
	bool bAny = Widget->HasActiveTimers();
	FChildren* Children = Widget->GetChildren();
	for (int32 Index = 0; Index < Children->Num() && !bAny; ++Index)
	{
		bAny = HasRunningTimers(Children->GetChildAt(Index));
	}
	return bAny;
}

/** A window of the operating system that counts how often it asks for attention. */
class FCountingWindow final : public FGenericWindow
{
public:
	virtual void DrawAttention(const FWindowDrawAttentionParameters& Parameters) override { ++NumRequests; }

	int32 NumRequests = 0;
};

/** The editor's main window is the test's own meanwhile, and the editor in front again afterwards. */
class FMainWindow
{
public:
	FMainWindow()
		: Before(FGlobalTabmanager::Get()->GetRootWindow())
	{
		Window->SetNativeWindow(Native);
		FSlateApplication::Get().AddWindow(Window);
		FGlobalTabmanager::Get()->SetRootWindow(Window);
	}
	~FMainWindow()
	{
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		FSlateApplication::Get().ProcessApplicationActivationEvent(true);
		FSlateApplication::Get().RequestDestroyWindow(Window);
		if (Before.IsValid())
		{
			FGlobalTabmanager::Get()->SetRootWindow(Before.ToSharedRef());
		}
	}
	UE_NONCOPYABLE(FMainWindow)

	FString GetTexts() const
	{
		FSlateApplication::Get().Tick();
		FString Texts;
		CollectShownTexts(Window, Texts);
		return Texts;
	}

	const TSharedPtr<SWindow> Before;
	const TSharedRef<SWindow> Window = SNew(SWindow).ClientSize(FVector2D(600.0, 400.0));
	const TSharedRef<FCountingWindow> Native = MakeShared<FCountingWindow>();
};
}

BEGIN_DEFINE_SPEC(FKestrelStatusSpec, "Kestrel.Status", KestrelTest::Flags)
	void TestHas(const TCHAR* What, const FString& Text, const TCHAR* Part)
	{
		TestTrue(FString::Printf(TEXT("%s: \"%s\" has \"%s\""), What, *Text, Part), Text.Contains(Part));
	}
END_DEFINE_SPEC(FKestrelStatusSpec)

void FKestrelStatusSpec::Define()
{
	using namespace StatusTest;

	It("tells turns, actions and failures of the conversation, and nothing without one", [this]() {
		const FKestrelTestPanel Panel;
		Enter(EAgentState::Idle);
		KestrelTest::TestSameText(*this, TEXT("idle"), Line(), FString());
		BeginConversation();
		KestrelTest::TestSameText(*this, TEXT("begun"), Line(), TEXT("Working 0:00"));
		RunTool(TEXT("get_filesystem_tree"), TEXT("{\"dir_path\":\"Config\"}"));
		FailToChange(TEXT("a"));
		TestHas(TEXT("working"), Line(), TEXT("turn 2 \u00B7 2 actions, 1 failed"));
		Enter(EAgentState::PollRequest);
		Answer(TEXT("{\"type\":\"text\",\"text\":\"There.\"}"));
		KestrelTest::TestSameText(
			*this, TEXT("done"), Line(), TEXT("Done 0:00 \u00B7 turn 3 \u00B7 2 actions, 1 failed"));
		TestHas(TEXT("on the panel"), ShownTexts(Panel), *Line());
		BeginConversation();
		// The project may still be listed.
		TestHas(TEXT("the next one begins again"), Line(), TEXT("Working 0:00"));
		TestFalse(TEXT("without the turns of the last one"), Line().Contains(TEXT("turn")));
	});

	It("counts minutes and hours", [this]() {
		KestrelTest::TestSameText(*this, TEXT("seconds"), KestrelStatusText::DescribeSeconds(42.9), TEXT("0:42"));
		KestrelTest::TestSameText(*this, TEXT("minutes"), KestrelStatusText::DescribeSeconds(601), TEXT("10:01"));
		KestrelTest::TestSameText(*this, TEXT("hours"), KestrelStatusText::DescribeSeconds(3723), TEXT("1:02:03"));
	});

	It("shows what the service reports, whatever it is, until the answer is there", [this]() {
		const FKestrelTestPanel Panel(FVector2D(600.0, 400.0), true);
		BeginConversation();
		Enter(EAgentState::PollRequest);
		const FString LogBefore = Panel.Log();
		const int32 NumEntries = FKestrelInterface::Get().GetTranscript().GetEntries().Num();
		ReportStatus(TEXT("{\"partial\":\"I look\",\"tokens\":1234,\"attempt\":2}"));
		TestHas(TEXT("counters"), Line(), TEXT("1,234 tokens \u00B7 attempt 2"));
		ReportStatus(TEXT("{\"partial\":\"I look at **the gate**\",\"tokens\":-5,\"attempt\":\"x\"}"));
		KestrelTest::TestSameText(*this, TEXT("so far"), Panel.LastBlock(), TEXT("I look at the gate"));
		TestFalse(TEXT("no nonsense"), Line().Contains(TEXT("token")) || Line().Contains(TEXT("attempt")));
		for (const TCHAR* Odd : { TEXT("{\"partial\":{},\"tokens\":1e300}"), TEXT("{\"tokens\":[1]}"), TEXT("{}") })
		{
			ReportStatus(Odd);
			TestFalse(Odd, Line().Contains(TEXT("token")));
		}
		FKestrelInterface::Get().AddOwnStatusMessage(TEXT("Processing request..."));
		KestrelTest::TestSameText(*this, TEXT("stays last"), Panel.LastBlock(), TEXT("I look at the gate"));
		Answer(TEXT("{\"type\":\"text\",\"text\":\"The gate is open.\"}"));
		KestrelTest::TestSameText(*this, TEXT("in its place"), Panel.LastBlock(), TEXT("The gate is open."));
		for (const FString& Block : Panel.Blocks())
		{
			TestFalse(TEXT("nothing left of it"), Block.Contains(TEXT("I look")));
		}
		TestFalse(TEXT("not logged"), Panel.Log().Mid(LogBefore.Len()).Contains(TEXT("I look")));
		for (const FKestrelTranscriptEntry& Entry : FKestrelInterface::Get().GetTranscript().GetEntries())
		{
			TestFalse(TEXT("not recorded"), Entry.Text.Contains(TEXT("I look")));
		}
		TestTrue(TEXT("the rest is"), FKestrelInterface::Get().GetTranscript().GetEntries().Num() > NumEntries);
	});

	It("forgets what the service reported when the conversation ends", [this]() {
		const FKestrelTestPanel Panel;
		BeginConversation();
		Enter(EAgentState::PollRequest);
		ReportStatus(TEXT("{\"partial\":\"I look\"}"));
		TestTrue(TEXT("there"), Panel.Click(TEXT("[ End ]")));
		KestrelTest::TestSameText(*this, TEXT("gone"), Panel.LastBlock(), TEXT(" [ User End ]"));
		ReportStatus(TEXT("{\"partial\":\"too late\"}"));
		KestrelTest::TestSameText(*this, TEXT("nor does it come back"), Panel.LastBlock(), TEXT(" [ User End ]"));
	});

	It("warns of three equal failures in a row and offers to pause", [this]() {
		const FKestrelTestPanel Panel;
		BeginConversation();
		FailToChange(TEXT("a"));
		FailToChange(TEXT("a"));
		TestFalse(TEXT("two are none yet"), Panel.Click(TEXT("Pause now")));
		RunTool(TEXT("get_filesystem_tree"), TEXT("{\"dir_path\":\"Config\"}"));
		FailToChange(TEXT("a"));
		TestHas(TEXT("reading does not help"), ShownTexts(Panel), TEXT("failed 3 times in a row"));
		TestHas(TEXT("what it is"), ShownTexts(Panel), TEXT("NoSuchFolder/a.txt"));
		TestTrue(TEXT("pause"), Panel.Click(TEXT("Pause now")));
		TestTrue(TEXT("paused"), FAgent::Get().WasPaused());
		TestFalse(TEXT("once"), Panel.Click(TEXT("Pause now")));
		Enter(EAgentState::Pause);
		TestFalse(TEXT("done"), ShownTexts(Panel).Contains(TEXT("in a row")));

		BeginConversation();
		FailToChange(TEXT("a"));
		FailToChange(TEXT("a"));
		RunTool(TEXT("delete_file"), TEXT("{\"path\":\"NoSuchFolder/a.txt\"}"));
		FailToChange(TEXT("a"));
		TestFalse(TEXT("another failure is another one"), FKestrelRunStatus::Get().IsInLoop());

		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		const TGuardValue<TArray<FKestrelApprovalRule>> Rules(Settings.ApprovalRules, {});
		Settings.ApprovalRules.AddDefaulted_GetRef().Decision = EKestrelApproval::Deny;
		BeginConversation();
		FailToChange(TEXT("a"));
		FailToChange(TEXT("a"));
		FailToChange(TEXT("a"));
		TestTrue(TEXT("what a rule denies is a failure, too"), FKestrelRunStatus::Get().IsInLoop());
	});

	It("pauses and ends at once in every state", [this]() {
		const UEnum* States = StaticEnum<EAgentState>();
		for (int32 Value = 0; Value <= static_cast<int32>(EAgentState::EndRequest); ++Value)
		{
			const FString Name = States->GetNameStringByValue(Value);
			const FKestrelTestPanel Panel;
			BeginConversation();
			Enter(static_cast<EAgentState>(Value));
			const EAgentState State = FAgent::Get().GetAgentState();
			const bool bWorks = !KestrelTest::IsWaitingForUser(State);
			TestTrue(Name + TEXT(": Pause is there while it works"), Panel.Click(TEXT("Pause")) == bWorks);
			if (bWorks)
			{
				TestHas(*Name, Panel.LastBlock(), TEXT("Pausing request"));
				TestTrue(Name + TEXT(": paused"), FAgent::Get().WasPaused());
				TestFalse(Name + TEXT(": the button knows"), Panel.FindButton(TEXT("Pause"))->IsEnabled());
			}
			Panel.Click(TEXT("[ End ]"));
			TestTrue(Name + TEXT(": ended"), FAgent::Get().GetAgentState() == EAgentState::Idle);
			TestFalse(Name + TEXT(": and nothing goes on"), FHTTPAPI::Get().IsPolling());
		}
	});

	It("needs no frames while the user is waited for", [this]() {
		const FKestrelTestPanel Panel;
		BeginConversation();
		Enter(EAgentState::PollRequest);
		TestTrue(TEXT("the seconds go on"), HasRunningTimers(Panel.Widget.ToSharedRef()));
		Answer(TEXT("{\"type\":\"text\",\"text\":\"There.\"}"));
		TestTrue(TEXT("answered"), FAgent::Get().GetAgentState() == EAgentState::AwaitingUpdate);
		FSlateApplication::Get().Tick();
		TestFalse(TEXT("nothing moves"), HasRunningTimers(Panel.Widget.ToSharedRef()));
	});

	It("notifies a user who looks elsewhere, and the platform of one who is in another program", [this]() {
		const FMainWindow Main;
		const TSharedRef<FGlobalTabmanager> Tabs = FGlobalTabmanager::Get();
		const TSharedPtr<SDockTab> Tab = Tabs->TryInvokeTab(FName("Kestrel"));
		const FKestrelTestLog Log;
		const auto Ask = []() {
			BeginConversation();
			Enter(EAgentState::PollRequest);
			FAgent::Get().HandlePollStatusRequestCompleted(KestrelJson::ParseObject(
				TEXT("{\"response\":[{\"type\":\"tool_use\",\"id\":\"t\",\"name\":\"compile\",\"input\":{}}]}")));
		};
		Ask();
		TestFalse(TEXT("who looks at it is not told"), Main.GetTexts().Contains(TEXT("waits for your approval")));
		FSlateApplication::Get().ProcessApplicationActivationEvent(false);
		Ask();
		TestHas(TEXT("in another program"), Main.GetTexts(), TEXT("Kestrel waits for your approval of 1 action."));
		TestEqual(TEXT("attention"), Main.Native->NumRequests, 1);
		Enter(EAgentState::PollRequest);
		Answer(TEXT("{\"type\":\"text\",\"text\":\"There.\"}"));
		TestHas(TEXT("answered"), Main.GetTexts(), TEXT("Kestrel has answered."));
		TestEqual(TEXT("attention again"), Main.Native->NumRequests, 2);

		FSlateApplication::Get().ProcessApplicationActivationEvent(true);
		Tab->RequestCloseTab();
		Ask();
		TestHas(TEXT("without a panel"), Main.GetTexts(), TEXT("waits for your approval"));
		TestEqual(TEXT("the editor is in front"), Main.Native->NumRequests, 2);
		FSlateNotificationManager::Get().SetAllowNotifications(false);
		Ask();
		FSlateNotificationManager::Get().SetAllowNotifications(true);
	});
}
