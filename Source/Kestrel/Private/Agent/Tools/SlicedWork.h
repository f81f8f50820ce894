#pragma once

#include "CoreMinimal.h"

/** Work that runs on the game thread in slices, so that no frame waits for all of it. */
class IKestrelSlicedWork
{
public:
	virtual ~IKestrelSlicedWork() = default;

	/** Goes on until Deadline (in FPlatformTime::Seconds) or the end. Returns true at the end. */
	virtual bool Step(double Deadline) = 0;
	/** What is done, 0 to 1; below 0 when it cannot be known. */
	virtual float GetProgress() const = 0;
};
