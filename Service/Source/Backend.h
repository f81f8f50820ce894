#pragma once

#include "Responder.h"

/** What answers the two requests of the protocol. Several threads use it. */
class Backend
{
public:
	virtual ~Backend() = default;
	/** The reply to a turn; it holds the request id. The turn has all but that. */
	virtual HttpReply Command(Turn UserTurn) = 0;
	/** How far a turn is. Turns of other keys are as unknown as those that never were. */
	virtual HttpReply Status(const std::string& RequestId, const std::string& KeyName) = 0;
	/** Gives up what is being worked on, all at once and without waiting for its end. */
	virtual void Stop() {}

	/** @throws std::runtime_error when it cannot answer */
	virtual void CheckHealth() {}

	static HttpReply NoSuchRequest()
	{
		return HttpReply::FromJson({ { "status", "FAILED" }, { "error", "There is no such request." } });
	}
};
