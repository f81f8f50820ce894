#pragma once

#include <functional>
#include <list>
#include <mutex>
#include <thread>

/** Threads that each do one piece of work. All have ended when it is destroyed. */
class TurnThreads
{
public:
	~TurnThreads() { JoinAll(); }
	void Start(std::function<void()> Work);
	/** Nothing may be started any more. */
	void JoinAll();

private:
	struct OneThread
	{
		std::thread Thread;
		bool bEnded = false;
	};

	/** Under the lock. */
	std::list<OneThread> TakeEnded();

	std::mutex Mutex;
	std::list<OneThread> Threads;
};
