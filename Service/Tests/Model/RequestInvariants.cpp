#include "JsonFields.h"
#include "ScriptedModelServer.h"

#include <regex>
#include <set>

// What makes a model server refuse a conversation. Written from the formats' rules and apart from the code that follows
// them.

namespace
{
bool IsBlank(const std::string& Text)
{
	return Text.find_first_not_of(" \t\r\n") == std::string::npos;
}

std::string CheckTool(const Json& Tool, const char* SchemaKey)
{
	static const std::regex Name("[a-zA-Z0-9_-]{1,64}");
	if (!std::regex_match(GetText(Tool, "name"), Name))
	{
		return "a tool has no usable name";
	}
	return GetText(GetMember(Tool, SchemaKey), "type") == "object" ? "" : "a tool's schema is no object";
}

/** The ids of calls that wait for results, and of all calls so far. */
struct OpenCalls
{
	std::set<std::string> Open;
	std::set<std::string> All;

	std::string Begin(const std::string& Id, const std::string& Name)
	{
		if (Id.empty() || Name.empty())
		{
			return "a call has no id or no name";
		}
		Open.insert(Id);
		return All.insert(Id).second ? "" : "the id " + Id + " is used twice";
	}

	std::string End(const std::string& Id)
	{
		return Open.erase(Id) ? "" : "a result for " + Id + ", which is not open";
	}
};

std::string CheckChatModelMessage(const Json& Message, OpenCalls& Calls)
{
	const bool bHasCalls = Message.contains("tool_calls");
	if (bHasCalls && GetList(Message, "tool_calls").empty())
	{
		return "empty tool_calls";
	}
	if (!bHasCalls && IsBlank(GetText(Message, "content")))
	{
		return "an empty assistant message";
	}
	std::string Problem;
	for (const Json& Call : GetList(Message, "tool_calls"))
	{
		const Json& Function = GetMember(Call, "function");
		Problem += Calls.Begin(GetText(Call, "id"), GetText(Function, "name"));
		Problem += Json::parse(GetText(Function, "arguments"), nullptr, false).is_object() ? "" : "arguments no object";
	}
	return Problem;
}

std::string CheckChatMessage(const Json& Message, const std::string& Previous, OpenCalls& Calls)
{
	const std::string Role = GetText(Message, "role");
	if (Role == "tool")
	{
		return (IsBlank(GetText(Message, "content")) ? "an empty result" : "") +
			   Calls.End(GetText(Message, "tool_call_id"));
	}
	if (!Calls.Open.empty())
	{
		return "a call without a result before a message of " + Role;
	}
	if (Role == Previous || (Role == "system") != Previous.empty())
	{
		return "a message of " + Role + " after one of '" + Previous + "'";
	}
	return Role == "assistant"                    ? CheckChatModelMessage(Message, Calls)
		   : IsBlank(GetText(Message, "content")) ? "an empty message of " + Role
												  : "";
}

std::string CheckChat(const std::string& Head, const Json& Body)
{
	OpenCalls Calls;
	std::string Previous;
	for (const Json& Message : GetList(Body, "messages"))
	{
		if (const std::string Problem = CheckChatMessage(Message, Previous, Calls); !Problem.empty())
		{
			return Problem;
		}
		Previous = GetText(Message, "role");
	}
	for (const Json& Tool : GetList(Body, "tools"))
	{
		if (const std::string Problem = CheckTool(GetMember(Tool, "function"), "parameters"); !Problem.empty())
		{
			return Problem;
		}
	}
	const bool bStreams = GetMember(Body, "stream") == true && GetCount(Body, "max_tokens") > 0;
	return !Calls.Open.empty()                            ? "a call without a result at the end"
		   : Previous != "user" && Previous != "tool"     ? "the last message is of " + Previous
		   : !bStreams                                    ? "stream or max_tokens is missing"
		   : Head.find("POST /v1/chat/completions ") != 0 ? "a wrong path"
														  : "";
}

std::string CheckMessagesContent(const Json& Message, OpenCalls& Calls)
{
	const bool bUser = GetText(Message, "role") == "user";
	bool bTextSeen = false;
	std::string Problem = GetList(Message, "content").empty() ? "empty content" : "";
	for (const Json& Block : GetList(Message, "content"))
	{
		const std::string Type = GetText(Block, "type");
		if (Type == "tool_result")
		{
			Problem += bTextSeen || !bUser ? "a result behind text" : Calls.End(GetText(Block, "tool_use_id"));
			Problem += IsBlank(GetText(Block, "content")) ? "an empty result" : "";
		}
		else if (Type == "tool_use")
		{
			Problem += bUser ? "a call by the user" : Calls.Begin(GetText(Block, "id"), GetText(Block, "name"));
			Problem += GetMember(Block, "input").is_object() ? "" : "an input that is no object";
		}
		else if (Type == "text")
		{
			bTextSeen = true;
			Problem += IsBlank(GetText(Block, "text")) ? "an empty text" : "";
		}
	}
	return !bUser || Calls.Open.empty() ? Problem : Problem + "a call without a result in the next message";
}

std::string CheckMessages(const std::string& Head, const Json& Body)
{
	OpenCalls Calls;
	std::string Expected = "user";
	for (const Json& Message : GetList(Body, "messages"))
	{
		const std::string Role = GetText(Message, "role");
		const std::string Problem = Role == Expected ? CheckMessagesContent(Message, Calls) : "a message of " + Role;
		if (!Problem.empty())
		{
			return Problem;
		}
		Expected = Role == "user" ? "assistant" : "user";
	}
	for (const Json& Tool : GetList(Body, "tools"))
	{
		if (const std::string Problem = CheckTool(Tool, "input_schema"); !Problem.empty())
		{
			return Problem;
		}
	}
	const bool bStreams = GetMember(Body, "stream") == true && GetCount(Body, "max_tokens") > 0;
	return Expected != "assistant"                                 ? "the last message is the model's"
		   : !bStreams || GetText(Body, "system").empty()          ? "stream, max_tokens or system is missing"
		   : Head.find("anthropic-version: ") == std::string::npos ? "the version is missing"
		   : Head.find("POST /v1/messages ") != 0                  ? "a wrong path"
																   : "";
}
}

std::string FindRequestProblem(ModelFormat Format, const std::string& Head, const Json& Body)
{
	if (GetText(Body, "model").empty())
	{
		return "no model";
	}
	return Format == ModelFormat::Messages ? CheckMessages(Head, Body) : CheckChat(Head, Body);
}
