#pragma once

#include "HAL/Platform.h"

#include <compare>

namespace ETimespan
{
constexpr int64 TicksPerMicrosecond = 10;
constexpr int64 TicksPerMillisecond = 10'000;
constexpr int64 TicksPerSecond = 10'000'000;
constexpr int64 TicksPerMinute = 600'000'000;
constexpr int64 TicksPerHour = 36'000'000'000;
constexpr int64 TicksPerDay = 864'000'000'000;
}

/** A length of time in ticks of 100 nanoseconds. GetTotal… keep the fraction, GetDays and its kin truncate. */
struct FTimespan
{
	constexpr FTimespan() = default;
	constexpr explicit FTimespan(int64 InTicks)
		: Ticks(InTicks)
	{
	}
	constexpr FTimespan(int32 Hours, int32 Minutes, int32 Seconds)
		: Ticks(Hours * ETimespan::TicksPerHour + Minutes * ETimespan::TicksPerMinute +
				Seconds * ETimespan::TicksPerSecond)
	{
	}

	static constexpr FTimespan FromDays(double Days)
	{
		return FTimespan(static_cast<int64>(Days * ETimespan::TicksPerDay));
	}
	static constexpr FTimespan FromHours(double Hours)
	{
		return FTimespan(static_cast<int64>(Hours * ETimespan::TicksPerHour));
	}
	static constexpr FTimespan FromMinutes(double Minutes)
	{
		return FTimespan(static_cast<int64>(Minutes * ETimespan::TicksPerMinute));
	}
	static constexpr FTimespan FromSeconds(double Seconds)
	{
		return FTimespan(static_cast<int64>(Seconds * ETimespan::TicksPerSecond));
	}

	constexpr int64 GetTicks() const { return Ticks; }
	constexpr int32 GetDays() const { return static_cast<int32>(Ticks / ETimespan::TicksPerDay); }
	constexpr double GetTotalDays() const { return static_cast<double>(Ticks) / ETimespan::TicksPerDay; }
	constexpr double GetTotalHours() const { return static_cast<double>(Ticks) / ETimespan::TicksPerHour; }
	constexpr double GetTotalMinutes() const { return static_cast<double>(Ticks) / ETimespan::TicksPerMinute; }
	constexpr double GetTotalSeconds() const { return static_cast<double>(Ticks) / ETimespan::TicksPerSecond; }
	constexpr double GetTotalMilliseconds() const
	{
		return static_cast<double>(Ticks) / ETimespan::TicksPerMillisecond;
	}

	constexpr FTimespan operator+(FTimespan Other) const { return FTimespan(Ticks + Other.Ticks); }
	constexpr FTimespan operator-(FTimespan Other) const { return FTimespan(Ticks - Other.Ticks); }
	constexpr FTimespan operator-() const { return FTimespan(-Ticks); }
	constexpr auto operator<=>(const FTimespan&) const = default;

private:
	int64 Ticks = 0;
};
