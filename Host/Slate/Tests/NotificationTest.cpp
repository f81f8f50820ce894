#include "Framework/Docking/TabManager.h"
#include "Framework/Notifications/NotificationManager.h"
#include "GenericPlatform/GenericWindow.h"
#include "SlateTestFixture.h"
#include "Widgets/Notifications/SNotificationList.h"

namespace NotificationTest
{

class FNotificationTest : public FSlateTest
{
protected:
	FNotificationTest() { FGlobalTabmanager::Get()->SetRootWindow(Window.ToSharedRef()); }

	static TSharedPtr<SNotificationItem> Add(bool bFireAndForget)
	{
		FNotificationInfo Info(INVTEXT("News"));
		Info.bFireAndForget = bFireAndForget;
		Info.ExpireDuration = 100.0f;
		return FSlateNotificationManager::Get().AddNotification(Info);
	}
};

TEST_F(FNotificationTest, StayUntilTheyExpire)
{
	const TWeakPtr<SNotificationItem> Lasting = Add(false);
	const TWeakPtr<SNotificationItem> Passing = Add(true);
	Tick();
	Tick(50.0);
	EXPECT_TRUE(Passing.IsValid() && Lasting.IsValid());
	Tick(60.0);
	EXPECT_FALSE(Passing.IsValid());
	Tick(1000.0);
	ASSERT_TRUE(Lasting.IsValid());
	Lasting.Pin()->ExpireAndFadeout();
	Tick();
	Tick(110.0);
	EXPECT_FALSE(Lasting.IsValid());
}

TEST_F(FNotificationTest, AreNotShownWhereTheyAreSwitchedOffOrThereIsNoWindow)
{
	FSlateNotificationManager::Get().SetAllowNotifications(false);
	EXPECT_FALSE(Add(true).IsValid());
	FSlateNotificationManager::Get().SetAllowNotifications(true);
	Window.Reset();
	App().RequestDestroyWindow(App().GetTopLevelWindows()[0]);
	EXPECT_FALSE(Add(true).IsValid());
}

}
