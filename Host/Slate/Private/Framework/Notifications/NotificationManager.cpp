#include "Framework/Notifications/NotificationManager.h"

#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "Styling/AppStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Notifications/SNotificationList.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SWindow.h"
#include "Widgets/Text/STextBlock.h"

namespace NotificationManager
{
// Below menus, above the content.
constexpr int32 ZOrder = 5;
// Slate units.
constexpr float EdgeGap = 16.0f;
constexpr float Gap = 8.0f;
constexpr float Padding = 12.0f;
constexpr float Width = 280.0f;
}

FSlateNotificationManager& FSlateNotificationManager::Get()
{
	static FSlateNotificationManager Manager;
	return Manager;
}

TSharedPtr<SNotificationItem> FSlateNotificationManager::AddNotification(const FNotificationInfo& Info)
{
	const TSharedPtr<SWindow> Window =
		FSlateApplication::IsInitialized() ? FGlobalTabmanager::Get()->GetRootWindow() : nullptr;
	if (!bAllowNotifications || !Window.IsValid())
	{
		return nullptr;
	}
	TSharedPtr<SNotificationList> Shown = List.Pin();
	if (!Shown.IsValid() || ListWindow.Pin() != Window)
	{
		SAssignNew(Shown, SNotificationList);
		Window->AddOverlaySlot(NotificationManager::ZOrder)
			.HAlign(HAlign_Right)
			.VAlign(VAlign_Bottom)
			.Padding(NotificationManager::EdgeGap)[Shown.ToSharedRef()];
		List = Shown;
		ListWindow = Window;
	}
	return Shown->AddNotification(Info);
}

void SNotificationList::Construct(const FArguments& InArgs)
{
	ChildSlot[SAssignNew(Items, SVerticalBox)];
}

TSharedRef<SNotificationItem> SNotificationList::AddNotification(const FNotificationInfo& Info)
{
	const TSharedRef<SNotificationItem> Item =
		SNew(SNotificationItem, Info).OnExpired(this, &SNotificationList::OnItemExpired);
	Items->AddSlot().AutoHeight().Padding(0.0f, NotificationManager::Gap, 0.0f, 0.0f)[Item];
	return Item;
}

bool SNotificationList::IsEmpty() const
{
	return Items->GetChildren()->Num() == 0;
}

void SNotificationList::OnItemExpired(const TSharedRef<SNotificationItem>& Item)
{
	Items->RemoveSlot(Item);
}

void SNotificationItem::Construct(const FArguments& InArgs, const FNotificationInfo& Info)
{
	OnExpired = InArgs._OnExpired;
	ExpireDuration = Info.ExpireDuration;
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	// clang-format off
	ChildSlot
	[
		SNew(SBox)
		.WidthOverride(NotificationManager::Width)
		[
			SNew(SBorder)
			.BorderImage(FAppStyle::GetBrush("Menu.Background"))
			.Padding(NotificationManager::Padding)
			[
				Column
			]
		]
	];
	Column->AddSlot().AutoHeight()
	[
		SNew(STextBlock)
		.Text(Info.Text)
		.AutoWrapText(true)
	];
	for (const FNotificationButtonInfo& Button : Info.ButtonDetails)
	{
		Column->AddSlot().AutoHeight().HAlign(HAlign_Left).Padding(0.0f, NotificationManager::Gap, 0.0f, 0.0f)
		[
			MakeButton(Button)
		];
	}
	// clang-format on
	if (Info.bFireAndForget)
	{
		ExpireAndFadeout();
	}
}

TSharedRef<SWidget> SNotificationItem::MakeButton(const FNotificationButtonInfo& Button) const
{
	const FSimpleDelegate Callback = Button.Callback;
	// clang-format off
	return SNew(SButton)
		.ButtonStyle(&FAppStyle::Get().GetWidgetStyle<FButtonStyle>("PrimaryButton"))
		.Text(Button.Text)
		.ToolTipText(Button.ToolTip)
		.Visibility(Button.VisibilityOnState == CompletionState ? EVisibility::Visible : EVisibility::Collapsed)
		.OnClicked_Lambda([Callback]() {
			Callback.ExecuteIfBound();
			return FReply::Handled();
		});
	// clang-format on
}

void SNotificationItem::ExpireAndFadeout()
{
	if (!bIsExpiring)
	{
		bIsExpiring = true;
		RegisterActiveTimer(ExpireDuration, FWidgetActiveTimerDelegate::CreateSP(this, &SNotificationItem::Expire));
	}
}

EActiveTimerReturnType SNotificationItem::Expire(double InCurrentTime, float InDeltaTime)
{
	OnExpired.ExecuteIfBound(SharedThis(this));
	return EActiveTimerReturnType::Stop;
}
