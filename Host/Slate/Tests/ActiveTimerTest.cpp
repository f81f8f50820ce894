#include "Application/ActiveTimerHandle.h"
#include "Framework/Docking/SDockingArea.h"
#include "SlateTestFixture.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/SCompoundWidget.h"

namespace ActiveTimerTest
{

/** Counts what the application calls. */
class SCounter : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SCounter) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) {}

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override
	{
		SCompoundWidget::Tick(AllottedGeometry, InCurrentTime, InDeltaTime);
		++NumTicks;
	}
	EActiveTimerReturnType Count(double InCurrentTime, float InDeltaTime)
	{
		++NumRuns;
		LastDelta = InDeltaTime;
		return bContinue ? EActiveTimerReturnType::Continue : EActiveTimerReturnType::Stop;
	}
	TSharedRef<FActiveTimerHandle> Start(float Period)
	{
		return RegisterActiveTimer(Period, FWidgetActiveTimerDelegate::CreateSP(this, &SCounter::Count));
	}

	int32 NumTicks = 0;
	int32 NumRuns = 0;
	float LastDelta = 0.0f;
	bool bContinue = true;
};

class FActiveTimerTest : public FSlateTest
{
protected:
	FActiveTimerTest()
		: Counter(SNew(SCounter))
	{
		Show(Counter);
	}

	const TSharedRef<SCounter> Counter;
};

TEST_F(FActiveTimerTest, RunsForTheFirstTimeAfterOneWholePeriod)
{
	Counter->Start(100.0f);
	Tick();
	Tick(90.0);
	EXPECT_EQ(Counter->NumRuns, 0);
	Tick(11.0);
	EXPECT_EQ(Counter->NumRuns, 1);
	EXPECT_NEAR(Counter->LastDelta, 101.0f, 1.0f) << "since the timer's last run, not since the last frame";
	Tick(90.0);
	EXPECT_EQ(Counter->NumRuns, 1);
	Tick(11.0);
	EXPECT_EQ(Counter->NumRuns, 2);
}

TEST_F(FActiveTimerTest, RunsTwoRegistrationsBoth)
{
	const TWeakPtr<FActiveTimerHandle> First = Counter->Start(100.0f);
	Counter->Start(100.0f);
	Tick(101.0);
	EXPECT_EQ(Counter->NumRuns, 2);
	Counter->UnRegisterActiveTimer(First.Pin().ToSharedRef());
	EXPECT_FALSE(First.IsValid());
	Tick(101.0);
	EXPECT_EQ(Counter->NumRuns, 3);
}

TEST_F(FActiveTimerTest, EndsWhenItsFunctionSaysSo)
{
	Counter->bContinue = false;
	Counter->Start(0.0f);
	Tick();
	Tick();
	EXPECT_EQ(Counter->NumRuns, 1);
	EXPECT_FALSE(Counter->HasActiveTimers());
}

TEST_F(FActiveTimerTest, PausesWhileTheWidgetIsNotShown)
{
	Counter->Start(100.0f);
	Counter->SetVisibility(EVisibility::Collapsed);
	const int32 TicksBefore = Counter->NumTicks;
	Tick(1000.0);
	EXPECT_EQ(Counter->NumRuns, 0);
	EXPECT_EQ(Counter->NumTicks, TicksBefore);
	EXPECT_FALSE(App().GetNextTimerTime().IsSet());

	Counter->SetVisibility(EVisibility::Visible);
	Tick();
	EXPECT_EQ(Counter->NumRuns, 1) << "what was missed is not made up for";
	Tick(90.0);
	EXPECT_EQ(Counter->NumRuns, 1);
	Window->SetMinimized(true);
	Tick(1000.0);
	EXPECT_EQ(Counter->NumRuns, 1);
}

TEST_F(FActiveTimerTest, PausesBehindAnotherTab)
{
	const TSharedRef<SDockingArea> Area = SNew(SDockingArea);
	const TSharedRef<SDockTab> Tab = SNew(SDockTab)[Counter];
	const TSharedRef<SDockTab> Other = SNew(SDockTab);
	Area->AddTab(Tab, true);
	Area->AddTab(Other, true);
	Show(Area);
	Counter->Start(100.0f);
	Tick(1000.0);
	EXPECT_EQ(Counter->NumRuns, 0);
	Tab->ActivateInParent(ETabActivationCause::SetDirectly);
	Tick();
	EXPECT_EQ(Counter->NumRuns, 1);
}

TEST_F(FActiveTimerTest, TellsWhenTheNextTimerIsDue)
{
	Counter->Start(100.0f);
	Counter->Start(40.0f);
	Tick();
	ASSERT_TRUE(App().GetNextTimerTime().IsSet());
	EXPECT_NEAR(App().GetNextTimerTime().GetValue() - App().GetCurrentTime(), 40.0, 1.0);
}

TEST(ActiveTimerDeathTest, NeedsAnApplication)
{
	const TSharedRef<SCounter> Counter = SNew(SCounter);
	EXPECT_DEATH(Counter->Start(1.0f), "no Slate application");
	EXPECT_DEATH(FSlateApplication::Get(), "no Slate application");
}

}
