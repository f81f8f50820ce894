#pragma once

#include "CoreMinimal.h"

/** What is the same for all widgets of one frame. */
class FPaintArgs
{
public:
	FPaintArgs(double InCurrentTime, float InDeltaTime) : CurrentTime(InCurrentTime), DeltaTime(InDeltaTime) {}

	/** Application time in seconds. */
	double GetCurrentTime() const { return CurrentTime; }
	float GetDeltaTime() const { return DeltaTime; }

private:
	double CurrentTime;
	float DeltaTime;
};
