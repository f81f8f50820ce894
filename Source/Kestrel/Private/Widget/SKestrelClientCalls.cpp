#include "Widget/SKestrelClientCalls.h"

#include "Agent/Tools/PendingTools.h"
#include "Agent/Tools/ToolPlan.h"
#include "HAL/PlatformTime.h"
#include "Mcp/McpServer.h"
#include "Misc/Attribute.h"
#include "Types/SlateEnums.h"
#include "Widget/SKestrelApprovalList.h"
#include "Widget/SKestrelApproveButton.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelClientCalls"

namespace KestrelClientCalls
{
constexpr float Gap = 4.0f;
/** A client can withdraw its call and put another in its place while a person presses the button. */
constexpr double SecondsToLook = 0.5;

FText NameClients()
{
	TArray<FString> Names;
	for (const TSharedRef<FKestrelMcpClient>& Client : FKestrelMcpServer::Get().GetDispatcher().GetClients().GetAll())
	{
		Names.AddUnique(Client->Name);
	}
	return Names.IsEmpty() ? LOCTEXT("NoClient", "Nobody is connected.")
						   : FText::Format(LOCTEXT("Clients", "Connected: {0}."),
								 FText::FromString(FString::Join(Names, TEXT(", "))));
}
}

void SKestrelClientCalls::Construct(const FArguments& InArgs)
{
	SetVisibility(MakeAttributeSP(this, &SKestrelClientCalls::GetOwnVisibility));
	// clang-format off
	ChildSlot
	[
		SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			MakeStatusRow()
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, KestrelClientCalls::Gap)
		[
			SNew(STextBlock)
			.Visibility(this, &SKestrelClientCalls::GetCallVisibility)
			.AutoWrapText(true)
			.Text(this, &SKestrelClientCalls::GetCallHeading)
		]
		+ SVerticalBox::Slot()
		.FillHeight(1.0f)
		[
			SAssignNew(List, SKestrelApprovalList)
			.Visibility(this, &SKestrelClientCalls::GetCallVisibility)
			.OnMakeChangeView(InArgs._OnMakeChangeView)
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, KestrelClientCalls::Gap, 0.0f, 0.0f)
		[
			MakeCallButtons()
		]
	];
	// clang-format on
	ChangedHandle = FKestrelMcpServer::Get().OnChanged.AddSP(this, &SKestrelClientCalls::OnServerChanged);
	OnServerChanged();
}

SKestrelClientCalls::~SKestrelClientCalls()
{
	FKestrelMcpServer::Get().OnChanged.Remove(ChangedHandle);
}

TSharedRef<SWidget> SKestrelClientCalls::MakeStatusRow()
{
	// clang-format off
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot()
		.FillWidth(1.0f)
		.VAlign(VAlign_Center)
		[
			SNew(STextBlock)
			.AutoWrapText(true)
			.Text(this, &SKestrelClientCalls::GetStatus)
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.VAlign(VAlign_Center)
		.Padding(KestrelClientCalls::Gap, 0.0f, 0.0f, 0.0f)
		[
			SNew(SButton)
			.Text(LOCTEXT("Stop", "Stop listening"))
			.ToolTipText(LOCTEXT("StopToolTip", "Disconnect other assistants, and let no others in"))
			.Visibility(this, &SKestrelClientCalls::GetStopVisibility)
			.OnClicked(this, &SKestrelClientCalls::OnStopClicked)
		];
	// clang-format on
}

TSharedRef<SWidget> SKestrelClientCalls::MakeCallButtons()
{
	// clang-format off
	return SNew(SHorizontalBox)
		.Visibility(this, &SKestrelClientCalls::GetCallVisibility)
		+ SHorizontalBox::Slot()
		.AutoWidth()
		[
			SNew(SKestrelApproveButton)
			.Text(LOCTEXT("Allow", "Allow this call"))
			.ToolTipText(this, &SKestrelClientCalls::GetAllowToolTip)
			.IsEnabled(this, &SKestrelClientCalls::MayDecide)
			.OnClicked(this, &SKestrelClientCalls::OnAllowClicked)
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.Padding(KestrelClientCalls::Gap, 0.0f, 0.0f, 0.0f)
		[
			SNew(SKestrelApproveButton)
			.Text(LOCTEXT("Reject", "Reject this call"))
			.ToolTipText(LOCTEXT("RejectToolTip", "Change nothing, and tell the assistant so"))
			.OnClicked(this, &SKestrelClientCalls::OnRejectClicked)
		];
	// clang-format on
}

void SKestrelClientCalls::OnServerChanged()
{
	const TArray<TSharedRef<FKestrelMcpCall>> Waiting = FKestrelMcpServer::Get().GetCalls().GetAwaitingApproval();
	ShownHandle = Waiting.IsEmpty() ? FString() : Waiting[0]->Handle;
	const TSharedPtr<FKestrelToolPlan> Plan = Waiting.IsEmpty() ? nullptr : Waiting[0]->Plan;
	if (Plan != ShownPlan)
	{
		ShownPlan = Plan;
		ShownSince = FPlatformTime::Seconds();
	}
	FKestrelPendingTools Tools;
	if (!Waiting.IsEmpty())
	{
		Tools.Add(Waiting[0]->Plan.ToSharedRef());
	}
	List->SetTools(Tools, /*bPaused*/ false);
}

EVisibility SKestrelClientCalls::GetOwnVisibility() const
{
	return FKestrelMcpServer::Get().GetState() == EKestrelMcpServerState::Off ? EVisibility::Collapsed
																			  : EVisibility::SelfHitTestInvisible;
}

EVisibility SKestrelClientCalls::GetCallVisibility() const
{
	return ShownHandle.IsEmpty() ? EVisibility::Collapsed : EVisibility::Visible;
}

EVisibility SKestrelClientCalls::GetStopVisibility() const
{
	return FKestrelMcpServer::Get().GetState() == EKestrelMcpServerState::Listening ? EVisibility::Visible
																					: EVisibility::Collapsed;
}

FText SKestrelClientCalls::GetStatus() const
{
	const FKestrelMcpServer& Server = FKestrelMcpServer::Get();
	switch (Server.GetState())
	{
	case EKestrelMcpServerState::Listening:
		return Server.GetNotice().IsEmpty()
				   ? FText::Format(LOCTEXT("Listening", "Other assistants: listening at {0}. {1}"),
						 FText::FromString(Server.GetUrl()), KestrelClientCalls::NameClients())
				   : FText::Format(LOCTEXT("ListeningAfterNotice", "Other assistants: listening at {0}. {1} {2}"),
						 FText::FromString(Server.GetUrl()), KestrelClientCalls::NameClients(), Server.GetNotice());
	case EKestrelMcpServerState::Failed:
		return FText::Format(LOCTEXT("Failed", "Other assistants are not let in. {0}"), Server.GetFailure());
	case EKestrelMcpServerState::Starting:
		return LOCTEXT("Starting", "Other assistants: the server is starting.");
	case EKestrelMcpServerState::Off:
		break;
	}
	return FText::GetEmpty();
}

FText SKestrelClientCalls::GetCallHeading() const
{
	const TArray<TSharedRef<FKestrelMcpCall>> Waiting = FKestrelMcpServer::Get().GetCalls().GetAwaitingApproval();
	if (Waiting.IsEmpty())
	{
		return FText::GetEmpty();
	}
	const FText Name = FText::FromString(Waiting[0]->Client->Name);
	return Waiting.Num() == 1
			   ? FText::Format(LOCTEXT("Asks", "{0}, another assistant, asks:"), Name)
			   : FText::Format(LOCTEXT("AsksFirst", "{0}, another assistant, asks, and {1} more {1}|plural(one=call "
													"waits,other=calls wait) behind:"),
					 Name, Waiting.Num() - 1);
}

bool SKestrelClientCalls::MayDecide() const
{
	return !FKestrelMcpCallQueue::IsPanelAtWork() &&
		   FPlatformTime::Seconds() - ShownSince >= KestrelClientCalls::SecondsToLook;
}

FText SKestrelClientCalls::GetAllowToolTip() const
{
	return FKestrelMcpCallQueue::IsPanelAtWork() ? LOCTEXT("PanelAtWork", "The conversation in this panel comes first.")
												 : LOCTEXT("AllowToolTip", "Run this tool for the other assistant");
}

FReply SKestrelClientCalls::OnAllowClicked()
{
	if (MayDecide()) // the button is told in the next frame only
	{
		FKestrelMcpServer::Get().GetCalls().Approve(ShownHandle);
	}
	return FReply::Handled();
}

FReply SKestrelClientCalls::OnRejectClicked()
{
	FKestrelMcpServer::Get().GetCalls().Reject(ShownHandle);
	return FReply::Handled();
}

FReply SKestrelClientCalls::OnStopClicked()
{
	FKestrelMcpServer::Get().TurnOff();
	return FReply::Handled();
}

#undef LOCTEXT_NAMESPACE
