#pragma once

#include "HAL/Platform.h"
#include "Misc/AssertionMacros.h"
#include "Templates/Function.h"
#include "Templates/SharedPointer.h"
#include "Templates/UnrealTemplate.h"

#include <atomic>
#include <type_traits>
#include <utility>

/** Names a task after the place that launches it. */
#define UE_SOURCE_LOCATION TEXT(__FILE__)

namespace UE::Tasks
{
enum class ETaskPriority : int8
{
	Normal,
	BackgroundNormal,
};

namespace Private
{
/** What a worker runs, once. */
class FTaskBase
{
public:
	virtual ~FTaskBase() = default;
	bool IsCompleted() const { return bCompleted; }
	/** Runs the task here when no worker has begun it. */
	void Wait();

protected:
	virtual void Run() = 0;

private:
	friend class FWorkers;
	/** @return false when somebody else has taken it */
	bool TryRun();

	std::atomic<bool> bTaken = false;
	std::atomic<bool> bCompleted = false;
};

void Dispatch(const TSharedRef<FTaskBase>& Task);
int32 GetNumWorkers();

template <typename ResultType>
class TTaskWithResult : public FTaskBase
{
public:
	explicit TTaskWithResult(TUniqueFunction<ResultType()> InBody)
		: Body(MoveTemp(InBody))
	{
	}

	ResultType Result{};

protected:
	virtual void Run() override
	{
		Result = Body();
		Body = nullptr;
	}

private:
	TUniqueFunction<ResultType()> Body;
};
}

/** A value that a worker makes. Copies are of the same task. */
template <typename ResultType>
class TTask
{
public:
	TTask() = default;

	bool IsValid() const { return Task.IsValid(); }
	bool IsCompleted() const { return !Task || Task->IsCompleted(); }
	/** Like the engine, it may run the task on this thread. */
	void Wait()
	{
		if (Task)
		{
			Task->Wait();
		}
	}
	ResultType& GetResult()
	{
		check(IsValid());
		Wait();
		return Task->Result;
	}

private:
	template <typename BodyType>
	friend auto Launch(const TCHAR*, BodyType&&, ETaskPriority);

	TSharedPtr<Private::TTaskWithResult<ResultType>> Task;
};

/** Runs Body on a worker thread. The body must not use what belongs to the game thread. */
template <typename BodyType>
auto Launch(const TCHAR* DebugName, BodyType&& Body, ETaskPriority Priority = ETaskPriority::Normal)
{
	using ResultType = std::invoke_result_t<BodyType>;
	TTask<ResultType> Task;
	Task.Task =
		MakeShared<Private::TTaskWithResult<ResultType>>(TUniqueFunction<ResultType()>(Forward<BodyType>(Body)));
	Private::Dispatch(Task.Task.ToSharedRef());
	return Task;
}

/** Asks a task to end early; the task has to look. */
class FCancellationToken
{
public:
	void Cancel() { bCanceled = true; }
	bool IsCanceled() const { return bCanceled; }

private:
	std::atomic<bool> bCanceled = false;
};
}
