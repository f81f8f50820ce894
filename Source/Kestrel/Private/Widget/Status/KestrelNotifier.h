#pragma once

#include "Agent/KestrelAgentState.h"
#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "Delegates/IDelegateInstance.h"

class SNotificationItem;

/**
 * Tells a user who looks elsewhere that the assistant waits for approval, has answered or has given up.
 *
 * Elsewhere is another tab, with the panel closed or behind it, or another program. There is one notification at most;
 * it goes when the user looks at the panel, or when what it says is no longer true. With the editor in the background,
 * its window asks for attention as well. Progress is never told.
 */
class KESTREL_API FKestrelNotifier
{
public:
	/** @param InTabName  the tab that has the panel */
	explicit FKestrelNotifier(const FName& InTabName);
	~FKestrelNotifier();
	UE_NONCOPYABLE(FKestrelNotifier)

private:
	void OnStateChanged();
	/** Empty for a state that nobody has to know of. */
	FText DescribeState() const;
	bool IsPanelInView() const;
	void Notify(const FText& Text);
	void ShowPanel();
	/** Takes the notification away once the panel is in view; asked while there is one. */
	bool WatchPanel(float DeltaTime);
	void Dismiss();

	const FName TabName;
	EAgentState State = EAgentState::None;
	TWeakPtr<SNotificationItem> Notification;
	FDelegateHandle StateChangedHandle;
	FTSTicker::FDelegateHandle Ticker;
};
