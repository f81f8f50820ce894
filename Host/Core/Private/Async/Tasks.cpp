#include "Async/ParallelFor.h"
#include "Tasks/Task.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace UE::Tasks::Private
{
/** The threads that run tasks, in the order in which these were launched. They start with the first task. */
class FWorkers
{
public:
	static FWorkers& Get()
	{
		static FWorkers Workers;
		return Workers;
	}

	~FWorkers()
	{
		{
			const std::lock_guard Lock(Mutex);
			bStopped = true;
		}
		HasWork.notify_all();
		for (std::thread& Thread : Threads)
		{
			Thread.join();
		}
	}

	static int32 GetNum() { return static_cast<int32>(std::max(2U, std::thread::hardware_concurrency())); }

	void Add(const TSharedRef<FTaskBase>& Task)
	{
		{
			const std::lock_guard Lock(Mutex);
			Tasks.push_back(Task);
			if (static_cast<int32>(Threads.size()) < GetNum())
			{
				Threads.emplace_back(&FWorkers::Work, this);
			}
		}
		HasWork.notify_one();
	}

private:
	void Work()
	{
		while (TSharedPtr<FTaskBase> Task = Take())
		{
			Task->TryRun();
		}
	}

	/** Null when the process ends. */
	TSharedPtr<FTaskBase> Take()
	{
		std::unique_lock Lock(Mutex);
		HasWork.wait(Lock, [this]() { return bStopped || !Tasks.empty(); });
		if (bStopped)
		{
			return nullptr;
		}
		const TSharedPtr<FTaskBase> Task = Tasks.front();
		Tasks.pop_front();
		return Task;
	}

	std::mutex Mutex;
	std::condition_variable HasWork;
	std::deque<TSharedPtr<FTaskBase>> Tasks;
	std::vector<std::thread> Threads;
	bool bStopped = false;
};

bool FTaskBase::TryRun()
{
	if (bTaken.exchange(true))
	{
		return false;
	}
	Run();
	bCompleted = true;
	bCompleted.notify_all();
	return true;
}

void FTaskBase::Wait()
{
	if (!TryRun())
	{
		bCompleted.wait(false);
	}
}

void Dispatch(const TSharedRef<FTaskBase>& Task)
{
	FWorkers::Get().Add(Task);
}

int32 GetNumWorkers()
{
	return FWorkers::GetNum();
}
}

void ParallelFor(int32 Num, TFunctionRef<void(int32)> Body, EParallelForFlags Flags)
{
	std::atomic<int32> Next = 0;
	const auto TakeAll = [&Next, &Body, Num]() {
		for (int32 Index = Next++; Index < Num; Index = Next++)
		{
			Body(Index);
		}
		return true;
	};
	std::vector<UE::Tasks::TTask<bool>> Helpers;
	const int32 NumThreads =
		Flags == EParallelForFlags::ForceSingleThread ? 1 : std::min(Num, UE::Tasks::Private::GetNumWorkers());
	Helpers.reserve(static_cast<std::size_t>(std::max(NumThreads - 1, 0)));
	for (int32 Index = 0; Index < NumThreads - 1; ++Index)
	{
		Helpers.push_back(UE::Tasks::Launch(TEXT("ParallelFor"), TakeAll));
	}
	TakeAll();
	for (UE::Tasks::TTask<bool>& Each : Helpers)
	{
		Each.Wait();
	}
}
