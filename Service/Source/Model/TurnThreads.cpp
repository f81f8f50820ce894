#include "TurnThreads.h"

void TurnThreads::JoinAll()
{
	for (OneThread& Each : Threads)
	{
		Each.Thread.join();
	}
	Threads.clear();
}

void TurnThreads::Start(std::function<void()> Work)
{
	std::list<OneThread> Ended;
	{
		const std::lock_guard Lock(Mutex);
		Ended = TakeEnded();
		OneThread& Added = Threads.emplace_back();
		Added.Thread = std::thread([this, &Added, Work = std::move(Work)] {
			Work();
			const std::lock_guard EndLock(Mutex);
			Added.bEnded = true;
		});
	}
	for (OneThread& Each : Ended)
	{
		Each.Thread.join();
	}
}

std::list<TurnThreads::OneThread> TurnThreads::TakeEnded()
{
	std::list<OneThread> Ended;
	for (auto At = Threads.begin(); At != Threads.end();)
	{
		const auto Next = std::next(At);
		if (At->bEnded)
		{
			Ended.splice(Ended.end(), Threads, At);
		}
		At = Next;
	}
	return Ended;
}
