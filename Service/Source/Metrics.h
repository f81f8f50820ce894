#pragma once

#include <map>
#include <mutex>
#include <string>

/** What is counted. */
enum class Metric
{
	HttpRequests,
	Turns,
	TurnSeconds,
	ModelRequests,
	ModelFaults,
	Tokens,
	Cost,
	RateLimited,
	Count // of metrics
};

/** Counters that only grow, in the text format that Prometheus reads. Several threads use it. */
class Metrics
{
public:
	/** @param Label  empty, or the value of the metric's label */
	void Add(Metric Which, const std::string& Label, double Amount = 1);
	/** All counters; a metric without any is there, too, with its help. */
	std::string Render() const;

private:
	mutable std::mutex Mutex;
	std::map<std::pair<Metric, std::string>, double> Values;
};

/** The one of this process. */
Metrics& GetMetrics();
