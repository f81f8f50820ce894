#include "RateLimit.h"

#include <algorithm>
#include <cmath>

int RateLimit::Take(const std::string& Name, Clock::time_point Now)
{
	if (PerMinute <= 0)
	{
		return 0;
	}
	const double PerSecond = PerMinute / 60;
	const std::lock_guard Lock(Mutex);
	Allowance& Current = Allowances.try_emplace(Name, Allowance{ PerMinute, Now }).first->second;
	const double Passed = std::chrono::duration<double>(Now - Current.At).count();
	Current = { std::min(PerMinute, Current.Left + Passed * PerSecond), Now };
	if (Current.Left < 1)
	{
		return static_cast<int>(std::ceil((1 - Current.Left) / PerSecond));
	}
	Current.Left -= 1;
	return 0;
}
