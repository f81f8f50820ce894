#include "LeaseKeeper.h"

#include "Log.h"

#include <exception>

namespace
{
constexpr double RenewalsPerLease = 4; // three may fail
constexpr auto BetweenCleanings = std::chrono::hours(1);
}

LeaseKeeper::LeaseKeeper(ModelStore& InStore)
	: Store(InStore)
	, Thread([this] { Keep(); })
{
}

LeaseKeeper::~LeaseKeeper()
{
	{
		const std::lock_guard Lock(Mutex);
		bQuit = true;
	}
	Changed.notify_all();
	Thread.join();
}

void LeaseKeeper::Add(const std::string& RequestId, const std::shared_ptr<RunningTurn>& Running)
{
	const std::lock_guard Lock(Mutex);
	Turns[RequestId] = Running;
}

void LeaseKeeper::Remove(const std::string& RequestId)
{
	const std::lock_guard Lock(Mutex);
	Turns.erase(RequestId);
}

void LeaseKeeper::CancelAll()
{
	const std::lock_guard Lock(Mutex);
	for (const auto& [RequestId, Running] : Turns)
	{
		Running->Cancel();
	}
}

void LeaseKeeper::Keep()
{
	const auto Between = std::chrono::duration<double>(Store.GetLeaseSeconds() / RenewalsPerLease);
	auto LastCleaning = std::chrono::steady_clock::now();
	std::unique_lock Lock(Mutex);
	while (!Changed.wait_for(Lock, Between, [this] { return bQuit; }))
	{
		const TurnMap Kept = Turns;
		Lock.unlock();
		try
		{
			RenewAll(Kept);
			if (std::chrono::steady_clock::now() - LastCleaning > BetweenCleanings)
			{
				LastCleaning = std::chrono::steady_clock::now();
				Store.DropOld();
			}
		}
		catch (const std::exception& Error)
		{
			// The next time may be in time; otherwise the leases run out, and other processes take over.
			WriteLog("leases_not_renewed", { { "error", Error.what() } });
		}
		Lock.lock();
	}
}

void LeaseKeeper::RenewAll(const TurnMap& Kept)
{
	for (const auto& [RequestId, Running] : Kept)
	{
		if (const std::optional<double> Polled = Store.Renew(RequestId, Running->GetProgress()))
		{
			Running->NotePoll(*Polled);
		}
		else
		{
			Running->Lose();
		}
	}
}
