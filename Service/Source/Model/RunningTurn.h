#pragma once

#include "Responder.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>

/**
 * A turn that is being worked on: what a poll sees of it, and how the worker learns that nobody wants it any more.
 * The worker and the threads that answer polls use it at the same time.
 */
class RunningTurn
{
public:
	explicit RunningTurn(double InUnpolledSeconds)
		: UnpolledSeconds(InUnpolledSeconds)
	{
	}

	/** The status reply: the answer if there is one, and otherwise how far it is. */
	HttpReply Poll();
	/** Somebody has polled elsewhere. */
	void NotePoll(double SecondsAgo);
	/** How far it is, as the body of a status reply. */
	Json GetProgress() const;
	double GetSeconds() const;
	void Cancel();
	bool IsCancelled() const;
	/** Another process works on it: it is cancelled here, and its answer is for that process to give. */
	void Lose();
	bool IsLost() const;
	bool IsOver() const;

	void SetAttempt(int InAttempt);
	/** Text of the answer so far; the next attempt begins with none. */
	void SetPartialText(const std::string& Text);
	void AddTokens(int64_t Count);
	/** The reply to this and all further polls. */
	void Finish(const Json& StatusReply);

	/** Cancelled, or nobody has asked for UnpolledSeconds. */
	bool ShouldStop() const;
	/** @return false when the turn should stop instead */
	bool Wait(double Seconds);

private:
	using Clock = std::chrono::steady_clock;

	bool ShouldStopLocked() const;
	Json GetProgressLocked() const;

	const double UnpolledSeconds;
	const Clock::time_point Started = Clock::now();
	mutable std::mutex Mutex;
	std::condition_variable Cancelled;
	Clock::time_point LastPoll = Clock::now();
	bool bCancelled = false;
	std::string Partial;
	int64_t Tokens = 0;
	int Attempt = 1;
	bool bLost = false;
	std::optional<HttpReply> Reply; // once the turn is over
};
