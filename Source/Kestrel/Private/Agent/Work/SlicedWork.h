#pragma once

#include "CoreMinimal.h"
#include "HAL/PlatformTime.h"

/** Work on the game thread that is done in slices, so that no frame waits for all of it. */
class IKestrelSlicedWork
{
public:
	virtual ~IKestrelSlicedWork() = default;
	/**
	 * Goes on until Deadline or the end.
	 *
	 * @param Deadline  in seconds of FPlatformTime; one that is over asks for as little as possible
	 * @return true at the end
	 */
	virtual bool Step(double Deadline) = 0;
	/** What is done, 0 to 1; less than 0 where that cannot be known. */
	virtual float GetProgress() const = 0;
	/** Whether it goes on by itself, on another thread, so that a step only looks. */
	virtual bool IsElsewhere() const { return false; }
	/** Does what is left, at once. */
	virtual void Finish()
	{
		constexpr double AnyTime = 1.0;
		while (!Step(FPlatformTime::Seconds() + AnyTime))
		{
		}
	}
};
