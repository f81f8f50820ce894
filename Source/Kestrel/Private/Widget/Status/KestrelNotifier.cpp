#include "Widget/Status/KestrelNotifier.h"

#include "Agent/Agent.h"
#include "Agent/Tools/PendingTools.h"
#include "Containers/Ticker.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "Framework/Notifications/NotificationManager.h"
#include "GenericPlatform/GenericWindow.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/Notifications/SNotificationList.h"
#include "Widgets/SWindow.h"

#define LOCTEXT_NAMESPACE "KestrelNotifier"

namespace KestrelNotifier
{
constexpr float WatchSeconds = 0.25f;
}

FKestrelNotifier::FKestrelNotifier(const FName& InTabName)
	: TabName(InTabName)
	, State(FAgent::Get().GetAgentState())
	, StateChangedHandle(FAgent::Get().OnStateChanged().AddRaw(this, &FKestrelNotifier::OnStateChanged))
{
}

FKestrelNotifier::~FKestrelNotifier()
{
	FAgent::Get().OnStateChanged().Remove(StateChangedHandle);
	Dismiss();
}

void FKestrelNotifier::OnStateChanged()
{
	// A state that falls through to the next is told of twice.
	if (State == FAgent::Get().GetAgentState())
	{
		return;
	}
	State = FAgent::Get().GetAgentState();
	Dismiss();
	const FText Text = DescribeState();
	if (!Text.IsEmpty() && FSlateApplication::IsInitialized() && !IsPanelInView())
	{
		Notify(Text);
	}
}

FText FKestrelNotifier::DescribeState() const
{
	const FAgent& Agent = FAgent::Get();
	switch (State)
	{
	case EAgentState::AwaitingApproval:
		return FText::Format(
			LOCTEXT("Approval", "Kestrel waits for your approval of {0} {0}|plural(one=action,other=actions)."),
			Agent.GetPendingTools().Num());
	case EAgentState::AwaitingUpdate:
		return LOCTEXT("Answered", "Kestrel has answered.");
	case EAgentState::Idle:
		return Agent.GetPreviousState() == EAgentState::CancelRequest
				   ? LOCTEXT("Failed", "Kestrel could not finish: the request failed.")
				   : FText::GetEmpty();
	default:
		return FText::GetEmpty();
	}
}

bool FKestrelNotifier::IsPanelInView() const
{
	const TSharedPtr<SDockTab> Tab = FGlobalTabmanager::Get()->FindExistingLiveTab(TabName);
	return FSlateApplication::Get().IsActive() && Tab.IsValid() && Tab->IsForeground();
}

void FKestrelNotifier::Notify(const FText& Text)
{
	FNotificationInfo Info(Text);
	// It stays for somebody who is away, and goes by itself; see WatchPanel.
	Info.bFireAndForget = false;
	Info.ButtonDetails.Add(
		FNotificationButtonInfo(LOCTEXT("Show", "Show Kestrel"), LOCTEXT("ShowToolTip", "Bring the panel to the front"),
			FSimpleDelegate::CreateRaw(this, &FKestrelNotifier::ShowPanel), SNotificationItem::CS_None));
	Notification = FSlateNotificationManager::Get().AddNotification(Info);
	Ticker = FTSTicker::GetCoreTicker().AddTicker(
		FTickerDelegate::CreateRaw(this, &FKestrelNotifier::WatchPanel), KestrelNotifier::WatchSeconds);
	const TSharedPtr<SWindow> Window = FGlobalTabmanager::Get()->GetRootWindow();
	if (!FSlateApplication::Get().IsActive() && Window.IsValid())
	{
		Window->DrawAttention(FWindowDrawAttentionParameters(EWindowDrawAttentionRequestType::UntilActivated));
	}
}

void FKestrelNotifier::ShowPanel()
{
	FGlobalTabmanager::Get()->TryInvokeTab(TabName);
	Dismiss();
}

bool FKestrelNotifier::WatchPanel(float DeltaTime)
{
	if (!IsPanelInView())
	{
		return true;
	}
	Dismiss();
	return false;
}

void FKestrelNotifier::Dismiss()
{
	FTSTicker::GetCoreTicker().RemoveTicker(Ticker);
	Ticker.Reset();
	if (const TSharedPtr<SNotificationItem> Item = Notification.Pin())
	{
		Item->ExpireAndFadeout();
	}
	Notification.Reset();
}

#undef LOCTEXT_NAMESPACE
