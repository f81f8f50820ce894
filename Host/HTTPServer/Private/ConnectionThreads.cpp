#include "ConnectionThreads.h"

void FConnectionThreads::enqueue(std::function<void()> Serve)
{
	std::unique_lock<std::mutex> Lock(Mutex);
	JoinEnded();
	Changed.wait(Lock, [this] { return Threads.size() - Ended.size() < MaxConnections; });
	std::thread Thread(&FConnectionThreads::Run, this, std::move(Serve));
	const std::thread::id Id = Thread.get_id();
	Threads.emplace(Id, std::move(Thread));
}

void FConnectionThreads::Run(const std::function<void()>& Serve)
{
	Serve();
	const std::lock_guard<std::mutex> Lock(Mutex);
	Ended.push_back(std::this_thread::get_id());
	Changed.notify_all();
}

void FConnectionThreads::JoinEnded()
{
	for (const std::thread::id& Id : Ended)
	{
		const auto Found = Threads.find(Id);
		Found->second.join();
		Threads.erase(Found);
	}
	Ended.clear();
}

void FConnectionThreads::shutdown()
{
	std::unique_lock<std::mutex> Lock(Mutex);
	Changed.wait(Lock, [this] { return Threads.size() == Ended.size(); });
	JoinEnded();
}
