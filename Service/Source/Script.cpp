#include "Script.h"

#include <fstream>
#include <stdexcept>

namespace
{
struct Rule
{
	const char* Name;
	bool (*IsValid)(const Json& Value);
	const char* Wanted;
};

const Rule TurnRules[] = {
	{ "expect", [](const Json& Value) { return Value.is_object(); }, "an object" },
	{ "command", [](const Json& Value) { return Value.is_object(); }, "an object" },
	{ "status", [](const Json& Value) { return Value.is_array(); }, "an array" },
	{ "response", [](const Json&) { return true; }, "" }, // odd ones are faults that a script plays
};

const Rule ExpectRules[] = {
	{ "message", [](const Json& Value) { return Value.is_string(); }, "a string" },
	{ "tool_results", [](const Json& Value) { return Value.is_array() || Value.is_null(); }, "an array or null" },
	{ "is_confirmation_mode", [](const Json& Value) { return Value.is_boolean(); }, "true or false" },
	{ "was_confirmed", [](const Json& Value) { return Value.is_boolean() || Value.is_null(); }, "true, false or null" },
};

constexpr double LongestDelaySeconds = 24.0 * 60.0 * 60.0;

/** Further members of a reply are its body. */
const Rule ReplyRules[] = {
	{ "code", [](const Json& Value) { return Value.is_number_integer() && Value >= 100 && Value <= 599; },
		"a number from 100 to 599" },
	{ "raw", [](const Json& Value) { return Value.is_string(); }, "a string" },
	{ "content_type", [](const Json& Value) { return Value.is_string(); }, "a string" },
	{ "delay_seconds",
		[](const Json& Value) { return Value.is_number() && Value >= 0.0 && Value <= LongestDelaySeconds; },
		"a number of seconds, at most a day" },
	{ "drop", [](const Json& Value) { return Value.is_boolean(); }, "true or false" },
};

void Require(bool bCondition, const std::string& Place, const std::string& What)
{
	if (!bCondition)
	{
		throw std::runtime_error(Place + " " + What);
	}
}

template <size_t Count>
void CheckMembers(const Json& Object, const Rule (&Rules)[Count], const std::string& Place)
{
	for (const Rule& Each : Rules)
	{
		Require(!Object.contains(Each.Name) || Each.IsValid(Object[Each.Name]), Place + "." + Each.Name,
			std::string("must be ") + Each.Wanted);
	}
}

/** A misspelt member would silently make a turn answer something else. */
template <size_t Count>
void CheckNoOthers(const Json& Object, const Rule (&Rules)[Count], const std::string& Place)
{
	for (const auto& [Name, Value] : Object.items())
	{
		bool bKnown = false;
		for (const Rule& Each : Rules)
		{
			bKnown |= Name == Each.Name;
		}
		Require(bKnown, Place + "." + Name, "is not a member of the format");
	}
}

void CheckTurn(const Json& Turn, const std::string& Place)
{
	Require(Turn.is_object(), Place, "must be an object");
	CheckMembers(Turn, TurnRules, Place);
	CheckNoOthers(Turn, TurnRules, Place);
	if (Turn.contains("expect"))
	{
		CheckMembers(Turn["expect"], ExpectRules, Place + ".expect");
		CheckNoOthers(Turn["expect"], ExpectRules, Place + ".expect");
	}
	if (Turn.contains("command"))
	{
		CheckMembers(Turn["command"], ReplyRules, Place + ".command");
	}
	size_t Index = 0;
	for (const Json& Reply : Turn.contains("status") ? Turn["status"] : Json::array())
	{
		const std::string ReplyPlace = Place + ".status[" + std::to_string(Index++) + "]";
		Require(Reply.is_object(), ReplyPlace, "must be an object");
		CheckMembers(Reply, ReplyRules, ReplyPlace);
	}
}

Json Parse(const std::string& Path)
{
	std::ifstream File(Path);
	Require(File.is_open(), Path, "cannot be read");
	try
	{
		return Json::parse(File, nullptr, true, true);
	}
	catch (const Json::exception& Error)
	{
		throw std::runtime_error(Path + " is not valid JSON: " + Error.what());
	}
}
}

Json LoadScript(const std::string& Path)
{
	const Json Script = Parse(Path);
	const bool bHasTurns = Script.is_object() && Script.contains("turns") && Script["turns"].is_array();
	Require(bHasTurns, Path + ": turns", "must be an array");
	size_t Index = 0;
	for (const Json& Turn : Script["turns"])
	{
		CheckTurn(Turn, Path + ": turns[" + std::to_string(Index++) + "]");
	}
	return Script["turns"];
}
