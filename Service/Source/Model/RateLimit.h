#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>

/** How often each key may begin a turn: a minute's worth at once, and then evenly. Several threads use it. */
class RateLimit
{
public:
	using Clock = std::chrono::steady_clock;

	/** @param InPerMinute  0 for no limit */
	explicit RateLimit(double InPerMinute)
		: PerMinute(InPerMinute)
	{
	}

	/** @return 0 when there is one more, which is counted; otherwise the seconds to wait for it, rounded up */
	int Take(const std::string& Name, Clock::time_point Now = Clock::now());

private:
	struct Allowance
	{
		double Left;
		Clock::time_point At;
	};

	const double PerMinute;
	std::mutex Mutex;
	std::map<std::string, Allowance> Allowances; // by key name, of which there are few
};
