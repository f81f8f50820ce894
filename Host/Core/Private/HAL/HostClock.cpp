#include "HAL/HostClock.h"

#include "HAL/PlatformTime.h"
#include "Misc/AssertionMacros.h"

#include <chrono>

namespace HostClock
{
double WallSeconds()
{
	// The engine's clock never starts at 0, so that a stored 0.0 always lies in the past.
	constexpr double Offset = 16777216.0;
	const std::chrono::duration<double> SinceBoot = std::chrono::steady_clock::now().time_since_epoch();
	return SinceBoot.count() + Offset;
}
}

FHostClock& FHostClock::Get()
{
	static FHostClock Clock;
	return Clock;
}

double FHostClock::Now() const
{
	return HostClock::WallSeconds() + Skipped;
}

void FHostClock::AdvanceTo(double DueTime)
{
	const double Gap = DueTime - Now();
	if (Mode == EClockMode::Unattended && Gap > 0.0)
	{
		Skipped += Gap;
	}
}

void FHostClock::Release()
{
	checkf(NumHolds > 0, TEXT("The clock was released more often than it was held"));
	--NumHolds;
}

double FPlatformTime::Seconds()
{
	return FHostClock::Get().Now();
}

uint64 FPlatformTime::Cycles64()
{
	return static_cast<uint64>(std::chrono::steady_clock::now().time_since_epoch().count());
}

double FPlatformTime::ToSeconds64(uint64 Cycles)
{
	return static_cast<double>(Cycles) * 1e-9;
}
