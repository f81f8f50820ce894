#pragma once

#include "History.h"

#include <map>
#include <string>

/** Counts how often a model repeats a call that fails. A call that succeeds starts all counts again. */
class RepeatedFailures
{
public:
	static constexpr int Tolerated = 3;

	void Note(const ToolCall& Call, bool bFailed);
	/** Whether the call has failed so often that it is not run again. */
	bool IsHopeless(const ToolCall& Call) const;
	void Clear() { Counts.clear(); }

	Json ToJson() const { return Counts; }
	void FromJson(const Json& Stored);

private:
	std::map<std::string, int> Counts; // by name and input
};
