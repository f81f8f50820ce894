#include "Async/TaskGraphInterfaces.h"

#include "Containers/UnrealString.h"
#include "CoreGlobals.h"

#include <mutex>

namespace TaskGraph
{
std::mutex Mutex;
}

FTaskGraphInterface& FTaskGraphInterface::Get()
{
	static FTaskGraphInterface Graph;
	return Graph;
}

bool FTaskGraphInterface::FTask::IsReady() const
{
	return !Prerequisites.ContainsByPredicate(
		[](const FGraphEventRef& Prerequisite) { return !Prerequisite->IsComplete(); });
}

FGraphEventRef FTaskGraphInterface::Dispatch(TUniqueFunction<void()> Function, const FGraphEventArray* Prerequisites)
{
	const std::lock_guard Lock(TaskGraph::Mutex);
	FTask& Task = Tasks.Emplace_GetRef();
	Task.Function = MoveTemp(Function);
	Task.Event = MakeShared<FGraphEvent>();
	if (Prerequisites)
	{
		Task.Prerequisites = *Prerequisites;
	}
	return Task.Event;
}

bool FTaskGraphInterface::TakeReadyTask(FTask& OutTask)
{
	const std::lock_guard Lock(TaskGraph::Mutex);
	const int32 Index = Tasks.IndexOfByPredicate([](const FTask& Task) { return Task.IsReady(); });
	if (Index == INDEX_NONE)
	{
		return false;
	}
	OutTask = MoveTemp(Tasks[Index]);
	Tasks.RemoveAt(Index);
	return true;
}

void FTaskGraphInterface::ProcessThreadUntilIdle(ENamedThreads::Type CurrentThread)
{
	checkf(IsInGameThread(), TEXT("Only the game thread runs its tasks"));
	for (FTask Task; TakeReadyTask(Task);)
	{
		Task.Function();
		Task.Event->bComplete = true;
	}
}

FGraphEventRef FFunctionGraphTask::CreateAndDispatchWhenReady(TUniqueFunction<void()> InFunction, TStatId InStatId,
	const FGraphEventArray* InPrerequisites, ENamedThreads::Type InDesiredThread)
{
	return FTaskGraphInterface::Get().Dispatch(MoveTemp(InFunction), InPrerequisites);
}
