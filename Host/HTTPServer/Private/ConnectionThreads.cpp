#include "ConnectionThreads.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace ConnectionThreads
{
class FThreads : public httplib::TaskQueue
{
public:
	void enqueue(std::function<void()> Serve) override
	{
		std::unique_lock<std::mutex> Lock(Mutex);
		JoinEnded();
		Changed.wait(Lock, [this] { return Threads.size() - Ended.size() < MaxConnections; });
		std::thread Thread(&FThreads::Run, this, std::move(Serve));
		const std::thread::id Id = Thread.get_id();
		Threads.emplace(Id, std::move(Thread));
	}

	void shutdown() override
	{
		std::unique_lock<std::mutex> Lock(Mutex);
		Changed.wait(Lock, [this] { return Threads.size() == Ended.size(); });
		JoinEnded();
	}

private:
	void Run(const std::function<void()>& Serve)
	{
		Serve();
		const std::lock_guard<std::mutex> Lock(Mutex);
		Ended.push_back(std::this_thread::get_id());
		Changed.notify_all();
	}

	/** Joins the threads that have ended; the mutex is held. */
	void JoinEnded()
	{
		for (const std::thread::id& Id : Ended)
		{
			const auto Found = Threads.find(Id);
			Found->second.join();
			Threads.erase(Found);
		}
		Ended.clear();
	}

	std::mutex Mutex;
	std::condition_variable Changed;
	std::unordered_map<std::thread::id, std::thread> Threads;
	std::vector<std::thread::id> Ended;
};
}

httplib::TaskQueue* ConnectionThreads::Make()
{
	return new FThreads();
}
