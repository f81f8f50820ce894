#pragma once

#include "Containers/UnrealString.h"
#include "Misc/Timespan.h"

/** A point of the calendar, in ticks of 100 nanoseconds since the start of year 1. It carries no time zone. */
struct FDateTime
{
	constexpr FDateTime() = default;
	constexpr explicit FDateTime(int64 InTicks)
		: Ticks(InTicks)
	{
	}
	/** Months and days count from 1. */
	FDateTime(
		int32 Year, int32 Month, int32 Day, int32 Hour = 0, int32 Minute = 0, int32 Second = 0, int32 Millisecond = 0);

	/** Local time. File time stamps are UTC: compare them with UtcNow. */
	static FDateTime Now();
	static FDateTime UtcNow();
	static FDateTime Today() { return Now().GetDate(); }
	static FDateTime MinValue() { return FDateTime(0); }
	static FDateTime MaxValue() { return FDateTime(3652059 * ETimespan::TicksPerDay - 1); }
	static FDateTime FromUnixTimestamp(int64 UnixTime);
	int64 ToUnixTimestamp() const;
	static bool ParseIso8601(const TCHAR* DateTimeString, FDateTime& OutDateTime);

	int64 GetTicks() const { return Ticks; }
	void GetDate(int32& OutYear, int32& OutMonth, int32& OutDay) const;
	FDateTime GetDate() const { return FDateTime(Ticks - Ticks % ETimespan::TicksPerDay); }
	int32 GetYear() const;
	int32 GetMonth() const;
	int32 GetDay() const;
	int32 GetDayOfYear() const;
	int32 GetHour() const { return static_cast<int32>(Ticks / ETimespan::TicksPerHour % 24); }
	int32 GetMinute() const { return static_cast<int32>(Ticks / ETimespan::TicksPerMinute % 60); }
	int32 GetSecond() const { return static_cast<int32>(Ticks / ETimespan::TicksPerSecond % 60); }
	int32 GetMillisecond() const { return static_cast<int32>(Ticks / ETimespan::TicksPerMillisecond % 1000); }

	/** yyyy.mm.dd-hh.mm.ss */
	FString ToString() const { return ToString(TEXT("%Y.%m.%d-%H.%M.%S")); }
	/**
	 * Letters after "%": a A (am/pm), d, D (day of year), m, y, Y, h (12), H (24), M, S, s (milliseconds). Any other
	 * letter stands for itself.
	 */
	FString ToString(const TCHAR* Format) const;
	/** 2025-01-31T14:25:01.000Z */
	FString ToIso8601() const { return ToString(TEXT("%Y-%m-%dT%H:%M:%S.%sZ")); }

	FDateTime operator+(FTimespan Span) const { return FDateTime(Ticks + Span.GetTicks()); }
	FDateTime operator-(FTimespan Span) const { return FDateTime(Ticks - Span.GetTicks()); }
	FTimespan operator-(FDateTime Other) const { return FTimespan(Ticks - Other.Ticks); }
	constexpr auto operator<=>(const FDateTime&) const = default;

private:
	int64 Ticks = 0;
};
