#pragma once

#include "Agent/Work/SlicedWork.h"
#include "CoreMinimal.h"
#include "HAL/PlatformProcess.h"
#include "HAL/PlatformTime.h"
#include "HAL/ThreadSafeCounter.h"
#include "Tasks/Task.h"

/** What a task on a worker thread tells, and is told, while it runs. */
struct FKestrelTaskControl
{
	bool IsCanceled() const { return Token.IsCanceled(); }

	UE::Tasks::FCancellationToken Token;
	/** Of whatever is counted; less or equal to the total. */
	FThreadSafeCounter NumDone;
	/** 0 where it is not known. */
	FThreadSafeCounter NumTotal;
};

/**
 * Work on a worker thread, watched from the game thread. It must not use UObjects, nor anything else that belongs to
 * the game thread. Destroyed, it asks the task to end, and waits for that: it may be code that is about to be unloaded.
 */
template <typename ResultType>
class TKestrelBackgroundWork : public IKestrelSlicedWork
{
public:
	/** @param Body  should end soon once the work is canceled */
	explicit TKestrelBackgroundWork(TFunction<ResultType(FKestrelTaskControl&)> Body)
	{
		Task = UE::Tasks::Launch(
			UE_SOURCE_LOCATION, [Control = Control, Body = MoveTemp(Body)]() { return Body(*Control); });
	}

	virtual ~TKestrelBackgroundWork() override
	{
		Control->Token.Cancel();
		Task.Wait();
	}

	virtual bool Step(double Deadline) override
	{
		// Waiting by the engine's own means would run a task here that no thread has begun.
		constexpr float PauseSeconds = 0.0005f;
		while (!Task.IsCompleted() && FPlatformTime::Seconds() < Deadline)
		{
			FPlatformProcess::Sleep(PauseSeconds);
		}
		return Task.IsCompleted();
	}

	virtual float GetProgress() const override
	{
		const int32 NumTotal = Control->NumTotal.GetValue();
		return NumTotal > 0 ? static_cast<float>(Control->NumDone.GetValue()) / static_cast<float>(NumTotal) : -1.0f;
	}

	virtual bool IsElsewhere() const override { return true; }
	virtual void Finish() override { Task.Wait(); }
	int32 GetNumDone() const { return Control->NumDone.GetValue(); }
	ResultType& GetResult() { return Task.GetResult(); }

private:
	const TSharedRef<FKestrelTaskControl> Control = MakeShared<FKestrelTaskControl>();
	UE::Tasks::TTask<ResultType> Task;
};
