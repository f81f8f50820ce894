#pragma once

#include "Containers/UnrealString.h"
#include "Interfaces/IHttpRequest.h"

#include <memory>

/** Drives every request from the game thread. */
class FHttpManager
{
public:
	FHttpManager();
	~FHttpManager();
	UE_NONCOPYABLE(FHttpManager)

	/** Moves data and calls the delegates of what has ended; game thread. */
	void Tick(float DeltaSeconds);
	/** Sleeps until something arrives, MaxSeconds at the most; returns at once when nothing is in flight. */
	void WaitForActivity(float MaxSeconds);
	bool HasRequestsInFlight() const;
	/** Cancels what is in flight; the delegates are called. Nothing can be started any more. */
	void Shutdown();

private:
	friend class FCurlHttpRequest;
	struct FState;
	std::unique_ptr<FState> State;
};
