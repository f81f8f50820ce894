#pragma once

#include "Containers/Array.h"
#include "Stats/Stats.h"
#include "Templates/Function.h"
#include "Templates/SharedPointer.h"

namespace ENamedThreads
{
enum Type : int32
{
	GameThread = 1,
};
}

/** Tells whether a task has run. */
class FGraphEvent
{
public:
	bool IsComplete() const { return bComplete; }

private:
	friend class FTaskGraphInterface;
	bool bComplete = false;
};

using FGraphEventRef = TSharedPtr<FGraphEvent>;
using FGraphEventArray = TArray<FGraphEventRef>;

/** The game thread's queue of tasks. They never run inside the call that dispatches them. */
class FTaskGraphInterface
{
public:
	static FTaskGraphInterface& Get();

	FGraphEventRef Dispatch(TUniqueFunction<void()> Function, const FGraphEventArray* Prerequisites);
	/** Runs what is queued, in order of dispatch, and what those tasks dispatch; game thread only. */
	void ProcessThreadUntilIdle(ENamedThreads::Type CurrentThread);

private:
	struct FTask
	{
		TUniqueFunction<void()> Function;
		FGraphEventRef Event;
		FGraphEventArray Prerequisites;

		bool IsReady() const;
	};

	bool TakeReadyTask(FTask& OutTask);

	TArray<FTask> Tasks;
};

struct FFunctionGraphTask
{
	static FGraphEventRef CreateAndDispatchWhenReady(TUniqueFunction<void()> InFunction, TStatId InStatId,
		const FGraphEventArray* InPrerequisites, ENamedThreads::Type InDesiredThread);
};
