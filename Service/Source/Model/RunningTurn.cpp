#include "RunningTurn.h"

#include "Utf8.h"

#include <algorithm>

namespace
{
constexpr size_t MaxPartialBytes = 64 * 1024;

double SecondsSince(std::chrono::steady_clock::time_point Start)
{
	return std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
}
}

HttpReply RunningTurn::Poll()
{
	const std::lock_guard Lock(Mutex);
	LastPoll = Clock::now();
	return Reply ? *Reply : HttpReply::FromJson(GetProgressLocked());
}

void RunningTurn::NotePoll(double SecondsAgo)
{
	const auto Ago = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(SecondsAgo));
	const std::lock_guard Lock(Mutex);
	LastPoll = std::max(LastPoll, Clock::now() - Ago);
}

Json RunningTurn::GetProgress() const
{
	const std::lock_guard Lock(Mutex);
	return GetProgressLocked();
}

Json RunningTurn::GetProgressLocked() const
{
	return { { "status", "PROCESSING" }, { "partial", Partial }, { "tokens", Tokens },
		{ "seconds", static_cast<int64_t>(SecondsSince(Started)) }, { "attempt", Attempt } };
}

double RunningTurn::GetSeconds() const
{
	return SecondsSince(Started);
}

void RunningTurn::Cancel()
{
	{
		const std::lock_guard Lock(Mutex);
		bCancelled = true;
	}
	Cancelled.notify_all();
}

bool RunningTurn::IsCancelled() const
{
	const std::lock_guard Lock(Mutex);
	return bCancelled;
}

void RunningTurn::Lose()
{
	{
		const std::lock_guard Lock(Mutex);
		bLost = !Reply;
	}
	Cancel();
}

bool RunningTurn::IsLost() const
{
	const std::lock_guard Lock(Mutex);
	return bLost && !Reply;
}

bool RunningTurn::IsOver() const
{
	const std::lock_guard Lock(Mutex);
	return Reply || bLost;
}

void RunningTurn::SetAttempt(int InAttempt)
{
	const std::lock_guard Lock(Mutex);
	Attempt = InAttempt;
	Partial.clear();
}

void RunningTurn::SetPartialText(const std::string& Text)
{
	const std::lock_guard Lock(Mutex);
	Partial = Text.substr(0, FindCharacterStart(Text, MaxPartialBytes));
}

void RunningTurn::AddTokens(int64_t Count)
{
	const std::lock_guard Lock(Mutex);
	Tokens += Count;
}

void RunningTurn::Finish(const Json& StatusReply)
{
	const std::lock_guard Lock(Mutex);
	Reply = HttpReply::FromJson(StatusReply);
}

bool RunningTurn::ShouldStopLocked() const
{
	return bCancelled || SecondsSince(LastPoll) > UnpolledSeconds;
}

bool RunningTurn::ShouldStop() const
{
	const std::lock_guard Lock(Mutex);
	return ShouldStopLocked();
}

bool RunningTurn::Wait(double Seconds)
{
	const Clock::time_point End =
		Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(Seconds));
	std::unique_lock Lock(Mutex);
	while (Clock::now() < End && !ShouldStopLocked())
	{
		Cancelled.wait_until(Lock, std::min(End, Clock::now() + std::chrono::seconds(1)));
	}
	return !ShouldStopLocked();
}
