#include "RequestParser.h"

#include "RequestRules.h"

namespace
{
using Place = RequestRule::Place;

template <typename RequestType>
RuleResult ParseWithoutArguments(const Sentence&)
{
	return Understood(RequestType{});
}

// Those that carry text or a script come first: it may well speak of saving all or of a blueprint.
const RequestRule Rules[] = {
	{ Place::First, { "replace", "change" }, ParseReplace },
	{ Place::First, { "insert" }, ParseInsert },
	{ Place::First, { "run", "python", "execute" }, ParsePython },
	{ Place::First, { "find", "search", "where" }, ParseFind },
	{ Place::First, { "add" }, ParseAdd },
	{ Place::Anywhere, { "save" }, ParseSave },
	{ Place::Anywhere, { "behavior", "behaviour" }, ParseBehaviorTree },
	{ Place::Anywhere, { "blueprint" }, ParseBlueprint },
	{ Place::First, { "create", "write" }, ParseCreate },
	{ Place::First, { "delete", "remove" }, ParseDelete },
	{ Place::First, { "compile", "build", "rebuild" }, ParseWithoutArguments<Plain::Compile> },
	{ Place::Anywhere, { "list", "tree", "files", "folders", "structure" }, ParseList },
	{ Place::Anywhere, { "read", "show", "open", "print", "display", "see", "look" }, ParseRead },
	{ Place::Anywhere, { "finish", "done", "bye" }, ParseWithoutArguments<Plain::Finish> },
};
}

std::vector<PlainRequest> ParsePlainRequests(const std::string& Prompt)
{
	const Sentence Words(Prompt);
	for (const RequestRule& Rule : Rules)
	{
		const bool bApplies = Rule.Where == Place::First ? Words.BeginsWith(Rule.Words) : Words.HasAny(Rule.Words);
		if (RuleResult Requests = bApplies ? Rule.Parse(Words) : std::nullopt)
		{
			return std::move(*Requests);
		}
	}
	return {};
}
