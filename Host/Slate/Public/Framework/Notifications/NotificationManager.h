#pragma once

#include "CoreMinimal.h"

class SNotificationItem;
class SNotificationList;
class SWindow;
struct FNotificationInfo;

/** Shows notifications in the lower right corner of the main window. */
class FSlateNotificationManager
{
public:
	static FSlateNotificationManager& Get();

	/** Null where there is no window, or when they are switched off. */
	TSharedPtr<SNotificationItem> AddNotification(const FNotificationInfo& Info);
	void SetAllowNotifications(bool bShouldAllow) { bAllowNotifications = bShouldAllow; }

private:
	TWeakPtr<SNotificationList> List;
	TWeakPtr<SWindow> ListWindow;
	bool bAllowNotifications = true;
};
