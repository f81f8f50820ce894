#pragma once

#include "Agent/Work/SlicedWork.h"
#include "Containers/Ticker.h"
#include "CoreMinimal.h"

/** Does one work at a time, a slice in each frame. Game thread only. */
class KESTREL_API FKestrelWorkRunner
{
public:
	/**
	 * For the first slice, which is done at once: most work is over with it, and nobody has to wait for a frame. Tests
	 * shorten it.
	 */
	static double FirstSliceSeconds;
	static constexpr double SliceSeconds = 0.008;

	FKestrelWorkRunner() = default;
	~FKestrelWorkRunner() { Stop(); }
	UE_NONCOPYABLE(FKestrelWorkRunner)

	/**
	 * Begins a work; one that is under way is dropped.
	 *
	 * @param OnDone  called once the work is at its end, maybe before Start returns; never after Stop
	 */
	void Start(const TSharedRef<IKestrelSlicedWork>& InWork, TFunction<void()> InOnDone);
	/** Drops the work. */
	void Stop();
	bool IsRunning() const { return Work.IsValid(); }
	/** 0 to 1; less than 0 where it cannot be known. */
	float GetProgress() const { return Work ? Work->GetProgress() : -1.0f; }

private:
	/** @return false at the end */
	bool Step(double Deadline);

	TSharedPtr<IKestrelSlicedWork> Work;
	TFunction<void()> OnDone;
	bool bIsStepping = false;
	FTSTicker::FDelegateHandle TickerHandle;
};
