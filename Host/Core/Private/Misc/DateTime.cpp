#include "Misc/DateTime.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace DateTime
{
constexpr int64 UnixEpochTicks = 621'355'968'000'000'000;

std::chrono::year_month_day CivilDate(int64 Ticks)
{
	const int64 UnixDay = Ticks / ETimespan::TicksPerDay - UnixEpochTicks / ETimespan::TicksPerDay;
	return std::chrono::sys_days(std::chrono::days(UnixDay));
}

int32 TwelveHour(int32 Hour)
{
	return Hour % 12 == 0 ? 12 : Hour % 12;
}
}

FDateTime::FDateTime(int32 Year, int32 Month, int32 Day, int32 Hour, int32 Minute, int32 Second, int32 Millisecond)
{
	const std::chrono::year_month_day Date(std::chrono::year(Year), std::chrono::month(static_cast<uint32>(Month)),
		std::chrono::day(static_cast<uint32>(Day)));
	checkf(Date.ok(), TEXT("Created an invalid date: %d-%d-%d"), Year, Month, Day);
	const int64 UnixDay = std::chrono::sys_days(Date).time_since_epoch().count();
	Ticks = DateTime::UnixEpochTicks + UnixDay * ETimespan::TicksPerDay + Hour * ETimespan::TicksPerHour +
			Minute * ETimespan::TicksPerMinute + Second * ETimespan::TicksPerSecond +
			Millisecond * ETimespan::TicksPerMillisecond;
}

FDateTime FDateTime::UtcNow()
{
	using FTicks = std::chrono::duration<int64, std::ratio<1, ETimespan::TicksPerSecond>>;
	const auto Since1970 = std::chrono::system_clock::now().time_since_epoch();
	return FDateTime(DateTime::UnixEpochTicks + std::chrono::duration_cast<FTicks>(Since1970).count());
}

FDateTime FDateTime::Now()
{
	const FDateTime Utc = UtcNow();
	const std::time_t Unix = Utc.ToUnixTimestamp();
	std::tm Local{};
	localtime_r(&Unix, &Local);
	return Utc + FTimespan(Local.tm_gmtoff * ETimespan::TicksPerSecond);
}

FDateTime FDateTime::FromUnixTimestamp(int64 UnixTime)
{
	return FDateTime(DateTime::UnixEpochTicks + UnixTime * ETimespan::TicksPerSecond);
}

int64 FDateTime::ToUnixTimestamp() const
{
	return (Ticks - DateTime::UnixEpochTicks) / ETimespan::TicksPerSecond;
}

bool FDateTime::ParseIso8601(const TCHAR* DateTimeString, FDateTime& OutDateTime)
{
	int Year = 0, Month = 0, Day = 0, Hour = 0, Minute = 0, Second = 0;
	const int Fields = std::sscanf(
		TCHAR_TO_UTF8(DateTimeString), "%4d-%2d-%2dT%2d:%2d:%2d", &Year, &Month, &Day, &Hour, &Minute, &Second);
	const std::chrono::year_month_day Date(std::chrono::year(Year), std::chrono::month(static_cast<uint32>(Month)),
		std::chrono::day(static_cast<uint32>(Day)));
	if ((Fields != 3 && Fields != 6) || !Date.ok() || Hour > 23 || Minute > 59 || Second > 59)
	{
		return false;
	}
	OutDateTime = FDateTime(Year, Month, Day, Hour, Minute, Second);
	return true;
}

void FDateTime::GetDate(int32& OutYear, int32& OutMonth, int32& OutDay) const
{
	const std::chrono::year_month_day Date = DateTime::CivilDate(Ticks);
	OutYear = static_cast<int32>(Date.year());
	OutMonth = static_cast<int32>(static_cast<uint32>(Date.month()));
	OutDay = static_cast<int32>(static_cast<uint32>(Date.day()));
}

int32 FDateTime::GetYear() const
{
	return static_cast<int32>(DateTime::CivilDate(Ticks).year());
}

int32 FDateTime::GetMonth() const
{
	return static_cast<int32>(static_cast<uint32>(DateTime::CivilDate(Ticks).month()));
}

int32 FDateTime::GetDay() const
{
	return static_cast<int32>(static_cast<uint32>(DateTime::CivilDate(Ticks).day()));
}

int32 FDateTime::GetDayOfYear() const
{
	return (GetDate() - FDateTime(GetYear(), 1, 1)).GetDays() + 1;
}

FString FDateTime::ToString(const TCHAR* Format) const
{
	FString Result;
	for (const TCHAR* At = Format; *At; ++At)
	{
		if (*At != u'%' || !At[1])
		{
			Result.AppendChar(*At);
			continue;
		}
		switch (*++At)
		{
		case u'a':
			Result += GetHour() < 12 ? TEXT("am") : TEXT("pm");
			break;
		case u'A':
			Result += GetHour() < 12 ? TEXT("AM") : TEXT("PM");
			break;
		case u'd':
			Result.Appendf(TEXT("%02d"), GetDay());
			break;
		case u'D':
			Result.Appendf(TEXT("%03d"), GetDayOfYear());
			break;
		case u'm':
			Result.Appendf(TEXT("%02d"), GetMonth());
			break;
		case u'y':
			Result.Appendf(TEXT("%02d"), GetYear() % 100);
			break;
		case u'Y':
			Result.Appendf(TEXT("%04d"), GetYear());
			break;
		case u'h':
			Result.Appendf(TEXT("%02d"), DateTime::TwelveHour(GetHour()));
			break;
		case u'H':
			Result.Appendf(TEXT("%02d"), GetHour());
			break;
		case u'M':
			Result.Appendf(TEXT("%02d"), GetMinute());
			break;
		case u'S':
			Result.Appendf(TEXT("%02d"), GetSecond());
			break;
		case u's':
			Result.Appendf(TEXT("%03d"), GetMillisecond());
			break;
		default:
			Result.AppendChar(*At);
			break;
		}
	}
	return Result;
}
