#pragma once

#include "ModelRequest.h"

#include <ctime>
#include <functional>
#include <mutex>
#include <string>

/** What requests to the model have used. */
struct ModelConsumption
{
	int64_t Requests = 0;
	int64_t Tokens = 0;
	double Minutes = 0;
	double Cost = 0;

	void Add(const ModelConsumption& Other);
	static ModelConsumption Of(const ModelUsage& Usage, double Seconds, const ModelPrices& Prices);
};

class ModelStore;

enum class LimitScope
{
	Conversation,
	Day,
};

/** @return a message that names the limit which is reached, and how to raise it; empty when none is */
std::string FindReachedLimit(const ModelConsumption& Used, const ModelLimits& Limits, LimitScope Scope);

/** What all conversations of a day (UTC) have used together. Several threads use it. */
class DailyConsumption
{
public:
	using TimeFunction = std::function<std::time_t()>;

	explicit DailyConsumption(TimeFunction InNow = [] { return std::time(nullptr); })
		: Now(std::move(InNow))
	{
	}

	/** What is used is stored, and counted together with what others store. Called before there are several threads. */
	void KeepIn(ModelStore& InStore);
	void Add(const std::string& KeyName, const ModelConsumption& More);
	ModelConsumption Get();

private:
	std::time_t GetDay() const;
	void StartDay();

	const TimeFunction Now;
	ModelStore* Store = nullptr;
	std::mutex Mutex;
	std::time_t Day = 0;   // since 1970
	ModelConsumption Used; // without a store
};
