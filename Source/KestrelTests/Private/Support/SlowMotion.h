#pragma once

#include "Agent/Work/WorkRunner.h"
#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "HAL/PlatformProcess.h"
#include "HAL/PlatformTime.h"

/** For tests of work that takes several frames. */
namespace KestrelTest
{
/** Nothing is over with the first slice. */
class FSlowMotion
{
public:
	FSlowMotion() { FKestrelWorkRunner::FirstSliceSeconds = -1.0; }
	~FSlowMotion() { FKestrelWorkRunner::FirstSliceSeconds = Usual; }
	UE_NONCOPYABLE(FSlowMotion)

private:
	const double Usual = FKestrelWorkRunner::FirstSliceSeconds;
};

inline void Tick()
{
	constexpr float FrameSeconds = 0.02f;
	FPlatformProcess::Sleep(0.001f);
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
