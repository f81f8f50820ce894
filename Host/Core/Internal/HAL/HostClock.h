#pragma once

#include "HAL/Platform.h"

enum class EClockMode : uint8
{
	Wall,
	Unattended,
};

/**
 * The time behind FPlatformTime. It never runs backwards, in either mode.
 *
 * With a person at the editor it is the wall clock. In an unattended run it also jumps to the next due time whenever
 * nothing is in flight, so a conversation that polls for minutes passes in milliseconds. What waits for a time (the
 * core ticker, the active timers of widgets) tells when it is due; what is waited for without a time of its own (an
 * HTTP request, a build) holds the clock for as long as it is in flight.
 */
class FHostClock
{
public:
	static FHostClock& Get();

	void SetMode(EClockMode NewMode) { Mode = NewMode; }
	EClockMode GetMode() const { return Mode; }

	/** Seconds. */
	double Now() const;
	/** Moves an unattended clock on to DueTime (seconds); a time already past, or a wall clock, is left alone. */
	void AdvanceTo(double DueTime);

	/** Something is in flight: the clock does not jump until as many Release calls have come. Game thread. */
	void Hold() { ++NumHolds; }
	void Release();
	bool IsHeld() const { return NumHolds > 0; }

private:
	EClockMode Mode = EClockMode::Wall;
	double Skipped = 0.0; // seconds added to the wall clock; only grows
	int32 NumHolds = 0;
};
