#pragma once

// The engine's rules leave out exceptions, and so does the library then.
#define CPPHTTPLIB_NO_EXCEPTIONS
#include <condition_variable>
#include <functional>
#include <httplib.h>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

/**
 * A thread for each connection, made when it comes. Above the limit, new connections wait to be accepted: each takes a
 * file handle, which the editor needs for its own files.
 */
class FConnectionThreads : public httplib::TaskQueue
{
public:
	static constexpr size_t MaxConnections = 64;

	void enqueue(std::function<void()> Serve) override;
	/** Waits for all connections to end. */
	void shutdown() override;

private:
	void Run(const std::function<void()>& Serve);
	/** Joins the threads that have ended; the mutex is held. */
	void JoinEnded();

	std::mutex Mutex;
	std::condition_variable Changed;
	std::unordered_map<std::thread::id, std::thread> Threads;
	std::vector<std::thread::id> Ended;
};
