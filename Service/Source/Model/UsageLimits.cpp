#include "UsageLimits.h"

#include "ModelStore.h"

#include <algorithm>
#include <sstream>

namespace
{
struct LimitedQuantity
{
	const char* Name; // in the configuration
	const char* Unit; // in a message
	double Used;
	double Limit;
};

std::string Describe(double Number)
{
	std::ostringstream Text;
	Text.precision(12);
	Text << Number;
	return Text.str();
}
}

void ModelConsumption::Add(const ModelConsumption& Other)
{
	Requests += Other.Requests;
	Tokens += Other.Tokens;
	Minutes += Other.Minutes;
	Cost += Other.Cost;
}

ModelConsumption ModelConsumption::Of(const ModelUsage& Usage, double Seconds, const ModelPrices& Prices)
{
	constexpr double Million = 1e6;
	// A server that counts more cached than read must not lower the cost.
	const int64_t Cached = std::min(Usage.CachedInput, Usage.Input);
	const double Cost = static_cast<double>(Usage.Input - Cached) * Prices.Input +
						static_cast<double>(Cached) * Prices.CachedInput +
						static_cast<double>(Usage.Output) * Prices.Output;
	return { 1, Usage.Input + Usage.Output, Seconds / 60, Cost / Million };
}

std::string FindReachedLimit(const ModelConsumption& Used, const ModelLimits& Limits, LimitScope Scope)
{
	const LimitedQuantity Quantities[] = {
		{ "requests", "requests to the model", static_cast<double>(Used.Requests),
			static_cast<double>(Limits.Requests) },
		{ "tokens", "tokens", static_cast<double>(Used.Tokens), static_cast<double>(Limits.Tokens) },
		{ "minutes", "minutes of the model's time", Used.Minutes, Limits.Minutes },
		{ "cost", "(cost)", Used.Cost, Limits.Cost },
	};
	const bool bDay = Scope == LimitScope::Day;
	for (const LimitedQuantity& Each : Quantities)
	{
		if (Each.Limit > 0 && Each.Used >= Each.Limit)
		{
			const std::string Reached = "limit of " + Describe(Each.Limit) + " " + Each.Unit;
			const std::string Setting = std::string(bDay ? "limits.day." : "limits.conversation.") + Each.Name;
			return (bDay ? "Today's " + Reached + " is reached. Continue tomorrow (UTC), or raise "
						 : "This conversation has reached its " + Reached + ". Start a new one, or raise ") +
				   Setting + " in the service's configuration.";
		}
	}
	return "";
}

std::time_t DailyConsumption::GetDay() const
{
	constexpr std::time_t SecondsOfADay = 24 * 60 * 60;
	return Now() / SecondsOfADay;
}

void DailyConsumption::StartDay()
{
	if (const std::time_t Today = GetDay(); Today != Day)
	{
		Day = Today;
		Used = {};
	}
}

void DailyConsumption::KeepIn(ModelStore& InStore)
{
	Store = &InStore;
}

void DailyConsumption::Add(const std::string& KeyName, const ModelConsumption& More)
{
	if (Store)
	{
		Store->AddUsage(KeyName, GetDay(), More);
		return;
	}
	const std::lock_guard Lock(Mutex);
	StartDay();
	Used.Add(More);
}

ModelConsumption DailyConsumption::Get()
{
	if (Store)
	{
		return Store->GetUsage(GetDay());
	}
	const std::lock_guard Lock(Mutex);
	StartDay();
	return Used;
}
