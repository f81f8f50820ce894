#pragma once

#include "Agent/Work/WorkRunner.h"
#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "HAL/PlatformProcess.h"
#include "HAL/PlatformTime.h"

/** For tests of work that takes several frames. */
namespace KestrelTest
{
/** Another length of the first slice, in seconds. */
class FFirstSlice
{
public:
	explicit FFirstSlice(double Seconds) { FKestrelWorkRunner::FirstSliceSeconds = Seconds; }
	~FFirstSlice() { FKestrelWorkRunner::FirstSliceSeconds = Usual; }
	UE_NONCOPYABLE(FFirstSlice)

private:
	const double Usual = FKestrelWorkRunner::FirstSliceSeconds;
};

/** Nothing is over with the first slice. */
class FSlowMotion : public FFirstSlice
{
public:
	FSlowMotion()
		: FFirstSlice(-1.0)
	{
	}
};

/** All is over with the first slice, however busy the machine is. */
class FUnhurried : public FFirstSlice
{
public:
	FUnhurried()
		: FFirstSlice(60.0)
	{
	}
};

inline void Tick()
{
	constexpr float FrameSeconds = 0.02f;
	FPlatformProcess::Sleep(0.006f); // work pauses for a moment between two slices
	FTSTicker::GetCoreTicker().Tick(FrameSeconds);
}

/** @return false when it does not become true within some seconds */
inline bool TickUntil(TFunctionRef<bool()> Condition)
{
	constexpr double MaxSeconds = 20.0;
	for (const double Start = FPlatformTime::Seconds(); !Condition() && FPlatformTime::Seconds() - Start < MaxSeconds;)
	{
		Tick();
	}
	return Condition();
}
}
