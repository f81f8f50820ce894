#pragma once

#include "HttpServerRequest.h"
#include "HttpServerResponse.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>

/** A request on its way from the thread of its connection to the game thread, and the response on its way back. */
class FHttpExchange
{
public:
	struct FArrived
	{
		std::string Method;
		std::string Path;
		std::multimap<std::string, std::string> Headers;
		std::string Body;
		std::string PeerAddress;
		int PeerPort = 0;
	};

	explicit FHttpExchange(FArrived&& InArrived)
		: Arrived(std::move(InArrived))
	{
	}

	/** On the thread of the connection: waits until there is a response. Null when the server ends first. */
	TUniquePtr<FHttpServerResponse> WaitForResponse();
	/** On the game thread, once. Null ends the connection without an answer of a handler. */
	void Respond(TUniquePtr<FHttpServerResponse>&& InResponse);
	/** On the game thread: the request as handlers see it. The body is handed over. */
	void MakeRequest(FHttpServerRequest& OutRequest);

	FString GetPath() const;
	bool IsAnswered() const { return bAnswered; }

private:
	FArrived Arrived;
	std::mutex Mutex;
	std::condition_variable Changed;
	TUniquePtr<FHttpServerResponse> Response;
	bool bHasResponse = false; // guarded by the mutex
	bool bAnswered = false;    // the game thread's own
};
