#pragma once

#include "ConnectionThreads.h"
#include "HttpExchange.h"
#include "HttpRouter.h"

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

/** The server of one port: its threads take requests in, the game thread has them handled. */
class FHttpListener
{
public:
	/** Arrivals: what the game thread waits on when it has nothing else to do. */
	struct FArrivals
	{
		std::mutex Mutex;
		std::condition_variable Changed;
		bool bAny = false;
	};

	FHttpListener(uint32 InPort, FArrivals& InArrivals);
	/** All clients are answered with 503. */
	~FHttpListener();
	UE_NONCOPYABLE(FHttpListener)

	/** @return false when the port cannot be used; true also when it was bound before */
	bool Bind(const FString& Address);
	void Start();
	/** Has the requests handled that have come. */
	void Tick();
	bool HasWaitingRequests();

	const TSharedRef<FHttpRouter> Router = MakeShared<FHttpRouter>();

private:
	using FExchangePtr = std::shared_ptr<FHttpExchange>;

	/** On the thread of a connection. False for what the server takes no notice of. */
	bool Accept(const httplib::Request& Request, httplib::Response& OutResponse) const;
	void Serve(const httplib::Request& Request, httplib::Response& OutResponse);
	void Handle(const FExchangePtr& Exchange);
	void Answer(const FExchangePtr& Exchange, TUniquePtr<FHttpServerResponse>&& Response);

	const uint32 Port;
	FArrivals& Arrivals;
	httplib::Server Server;
	std::thread Thread;
	std::atomic<bool> bEnded = false; // the thread has
	bool bBound = false;
	std::mutex Mutex;
	std::vector<FExchangePtr> Arrived; // guarded by the mutex
	bool bClosed = false;              // guarded by the mutex
	std::vector<FExchangePtr> Waiting; // for their handler's answer; the game thread's own
};
