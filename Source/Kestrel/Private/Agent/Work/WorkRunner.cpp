#include "Agent/Work/WorkRunner.h"

#include "HAL/PlatformTime.h"

double FKestrelWorkRunner::FirstSliceSeconds = 0.02;

void FKestrelWorkRunner::Start(const TSharedRef<IKestrelSlicedWork>& InWork, TFunction<void()> InOnDone)
{
	Stop();
	Work = InWork;
	OnDone = MoveTemp(InOnDone);
	if (Step(FPlatformTime::Seconds() + FirstSliceSeconds) && Work == InWork)
	{
		TickerHandle = FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateLambda(
			[this](float) { return Step(Work->IsElsewhere() ? 0.0 : FPlatformTime::Seconds() + SliceSeconds); }));
	}
}

void FKestrelWorkRunner::Stop()
{
	FTSTicker::RemoveTicker(TickerHandle);
	TickerHandle.Reset();
	Work.Reset();
	OnDone = nullptr;
}

bool FKestrelWorkRunner::Step(double Deadline)
{
	if (bIsStepping)
	{
		return true; // what runs lets the editor tick
	}
	// What runs may stop this, and so may whoever is told of its end.
	const TSharedPtr<IKestrelSlicedWork> Current = Work;
	bool bDone = false;
	{
		const TGuardValue<bool> Stepping(bIsStepping, true);
		bDone = Current->Step(Deadline);
	}
	if (Work != Current)
	{
		return false;
	}
	if (!bDone)
	{
		return true;
	}
	const TFunction<void()> Done = MoveTemp(OnDone);
	Stop();
	Done();
	return false;
}
