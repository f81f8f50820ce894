#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Types/WidgetActiveTimerDelegate.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SNotificationItem;
class SVerticalBox;

DECLARE_DELEGATE_OneParam(FOnNotificationItemExpired, const TSharedRef<SNotificationItem>&);

struct FNotificationButtonInfo;
struct FNotificationInfo;

/** A notification that is shown. Whoever keeps it keeps it weakly: it goes when its time is over. */
class SNotificationItem : public SCompoundWidget
{
public:
	enum ECompletionState
	{
		CS_None,
		CS_Pending,
		CS_Success,
		CS_Fail,
	};

	SLATE_BEGIN_ARGS(SNotificationItem) {}
	SLATE_EVENT(FOnNotificationItemExpired, OnExpired)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, const FNotificationInfo& Info);

	/** Goes after the time that its info gave. */
	void ExpireAndFadeout();

private:
	TSharedRef<SWidget> MakeButton(const FNotificationButtonInfo& Button) const;
	EActiveTimerReturnType Expire(double InCurrentTime, float InDeltaTime);

	FOnNotificationItemExpired OnExpired;
	// None here tells of work. A button is seen in its own state only.
	ECompletionState CompletionState = CS_None;
	float ExpireDuration = 0.0f; // seconds
	bool bIsExpiring = false;
};

struct FNotificationButtonInfo
{
	FNotificationButtonInfo(FText InText, FText InToolTip, FSimpleDelegate InCallback,
		SNotificationItem::ECompletionState InVisibilityOnState = SNotificationItem::CS_Pending)
		: Text(InText)
		, ToolTip(InToolTip)
		, Callback(InCallback)
		, VisibilityOnState(InVisibilityOnState)
	{
	}

	FText Text;
	FText ToolTip;
	FSimpleDelegate Callback;
	SNotificationItem::ECompletionState VisibilityOnState;
};

/** What a notification says and how long it stays. */
struct FNotificationInfo
{
	explicit FNotificationInfo(const FText& InText)
		: Text(InText)
	{
	}

	FText Text;
	TArray<FNotificationButtonInfo> ButtonDetails;
	/** Seconds until it goes, from when it begins to expire. Here it goes at once then; nothing fades. */
	float ExpireDuration = 1.0f;
	/** Begins to expire as soon as it is shown. */
	bool bFireAndForget = true;
};

/** Notifications of a window, the latest at the bottom. */
class SNotificationList : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SNotificationList) { _Visibility = EVisibility::SelfHitTestInvisible; }
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	TSharedRef<SNotificationItem> AddNotification(const FNotificationInfo& Info);
	bool IsEmpty() const;

private:
	void OnItemExpired(const TSharedRef<SNotificationItem>& Item);

	TSharedPtr<SVerticalBox> Items;
};
