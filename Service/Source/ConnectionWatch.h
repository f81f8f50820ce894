#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <openssl/ssl.h>
#include <set>
#include <thread>

/**
 * Ends connections that keep a thread of the server without giving it anything to do: idle handshakes, and heads and
 * bodies that trickle in. Every request has to arrive within a time, its connection's handshake included; and where
 * many are waited for, the oldest makes room for a new one.
 *
 * Each connection must be served by one thread, from its handshake to its end.
 */
class ConnectionWatch
{
public:
	using Seconds = std::chrono::duration<double>;

	/** Connections whose request has not arrived, at most. The server needs more threads than that. */
	static constexpr size_t MostWaiting = 224;

	/** Learns of the connections from the context, which must outlive it; they all must have ended before it does. */
	ConnectionWatch(SSL_CTX* Context, Seconds InRequestTime);
	~ConnectionWatch();
	ConnectionWatch(const ConnectionWatch&) = delete;
	ConnectionWatch& operator=(const ConnectionWatch&) = delete;

	/** The request of this thread's connection has arrived; no time runs while it is at work. */
	void BeginAnswer();
	/** The answer is made, and now goes out. */
	void BeginReply();
	/** The answer is out: the connection may bring another request. */
	void EndReply();
	/** The answer is out, but not all of the request was read: what is left must not pass for another one. */
	void EndConnection();

	/** Ends all connections: those that wait at once, those that are being answered after a short time. */
	void Stop();

private:
	using Clock = std::chrono::steady_clock;
	enum class State
	{
		Waiting,
		Answering,
		Replying,
		Ended,
	};
	struct Connection
	{
		ConnectionWatch* Owner;
		SSL* Ssl;
		int Socket;
		State Now;
		Clock::time_point Deadline;
	};

	static void OnHandshake(const SSL* Ssl, int Where, int Result);
	static void OnFreed(void* Ssl, void* Data, CRYPTO_EX_DATA*, int, long, void*);
	static int ContextIndex();
	static int ConnectionIndex();

	void Add(SSL* Ssl);
	void Remove(Connection* Ended);
	void SetState(State Now);
	void EndOldestWaiting();
	void Watch();
	/** Has the watcher look no later than that. */
	void WakeBefore(Clock::time_point Deadline);
	static void End(Connection& Ended);
	static Clock::time_point After(Seconds Time);

	/** This thread's. */
	static thread_local Connection* Current;

	const Seconds RequestTime;
	std::mutex Mutex;
	std::condition_variable Changed;
	std::set<Connection*> Connections;
	Clock::time_point NextLook; // of the watcher
	bool bStopping = false;
	bool bQuit = false;
	std::thread Watcher;
};
