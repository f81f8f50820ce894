#include "RepeatedFailures.h"

#include "ModelRequest.h"

namespace
{
std::string KeyOf(const ToolCall& Call)
{
	return Call.Name + " " + ToRequestBody(Call.Input) + Call.InputError;
}
}

void RepeatedFailures::Note(const ToolCall& Call, bool bFailed)
{
	if (!bFailed)
	{
		Counts.clear();
		return;
	}
	++Counts[KeyOf(Call)];
}

bool RepeatedFailures::IsHopeless(const ToolCall& Call) const
{
	const auto Found = Counts.find(KeyOf(Call));
	return Found != Counts.end() && Found->second >= Tolerated;
}

void RepeatedFailures::FromJson(const Json& Stored)
{
	Counts.clear();
	for (const auto& [Key, Count] : Stored.items())
	{
		Counts[Key] = Count.is_number_integer() ? Count.get<int>() : 0;
	}
}
