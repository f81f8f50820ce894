#include "Log.h"

#include <atomic>
#include <chrono>
#include <ctime>
#include <iostream>
#include <mutex>

namespace
{
std::atomic<bool> bContentIsLogged = false;

std::string FormatTime()
{
	using namespace std::chrono;
	const auto Now = system_clock::now();
	const std::time_t Seconds = system_clock::to_time_t(Now);
	const auto Milliseconds = duration_cast<milliseconds>(Now.time_since_epoch()).count() % 1000;
	std::tm Parts = *std::gmtime(&Seconds);
	char Text[40];
	std::strftime(Text, sizeof(Text), "%Y-%m-%dT%H:%M:%S", &Parts);
	char Fraction[16];
	std::snprintf(Fraction, sizeof(Fraction), ".%03dZ", static_cast<int>(Milliseconds));
	return std::string(Text) + Fraction;
}
}

void LogContent(bool bLogContent)
{
	bContentIsLogged = bLogContent;
}

void WriteLog(const std::string& Event, const Json& Fields, const Json& Content)
{
	static std::mutex Mutex; // gmtime's buffer, and lines that stay whole
	const std::lock_guard Lock(Mutex);
	Json Line = { { "time", FormatTime() }, { "event", Event } };
	Line.update(Fields);
	if (bContentIsLogged)
	{
		Line.update(Content);
	}
	std::cerr << Line.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
}
