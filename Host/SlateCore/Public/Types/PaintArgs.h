#pragma once

#include "CoreMinimal.h"

/** What is the same for all widgets of one frame. */
class FPaintArgs
{
public:
	/** @param InNextTimerTime  takes the earliest time at which a timer of a painted widget is due; not null */
	FPaintArgs(double InCurrentTime, float InDeltaTime, double* InNextTimerTime)
		: CurrentTime(InCurrentTime)
		, DeltaTime(InDeltaTime)
		, NextTimerTime(InNextTimerTime)
	{
	}

	/** Application time in seconds. */
	double GetCurrentTime() const { return CurrentTime; }
	float GetDeltaTime() const { return DeltaTime; }
	void NoteTimer(double DueTime) const { *NextTimerTime = FMath::Min(*NextTimerTime, DueTime); }

private:
	double CurrentTime;
	float DeltaTime;
	double* NextTimerTime;
};
