#include "ScriptResponder.h"

#include "Script.h"

#include <filesystem>
#include <stdexcept>

namespace
{
const std::string Prefix = "script ";

bool IsPlainName(const std::string& Name)
{
	return !Name.empty() && Name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-_") == std::string::npos;
}

/** A fault or reply as a script has it: a "raw" text, or the object itself; "code", "delay_seconds" and "drop" apart.
 */
HttpReply ReadReply(const Json& Script)
{
	HttpReply Reply;
	Reply.Code = Script.value("code", 200);
	Reply.DelaySeconds = Script.value("delay_seconds", 0.0);
	Reply.bDrop = Script.value("drop", false);
	if (Script.contains("raw"))
	{
		Reply.Body = Script["raw"].get<std::string>();
		Reply.ContentType = Script.value("content_type", "text/plain");
		return Reply;
	}
	Json Body = Script;
	for (const char* Name : { "code", "delay_seconds", "drop" })
	{
		Body.erase(Name);
	}
	Reply.Body = Body.dump();
	return Reply;
}

/** What a script expects of a turn: the members that it names must be equal. Empty when they are. */
std::string FindDifference(const Json& Expected, const Turn& UserTurn)
{
	Json Actual = { { "message", UserTurn.Message }, { "tool_results", UserTurn.ToolResults },
		{ "is_confirmation_mode", UserTurn.bConfirmationMode } };
	Actual["was_confirmed"] = UserTurn.WasConfirmed ? Json(*UserTurn.WasConfirmed) : Json();
	for (const auto& [Name, Value] : Expected.items())
	{
		if (Actual.value(Name, Json()) != Value)
		{
			return "expected " + Name + " to be " + Value.dump() + ", but it was " + Actual.value(Name, Json()).dump();
		}
	}
	return "";
}

class ScriptedConversation : public Conversation
{
public:
	explicit ScriptedConversation(Json InTurns)
		: Turns(std::move(InTurns))
	{
	}

	Answer Respond(const Turn& UserTurn) override
	{
		if (NextTurn >= Turns.size())
		{
			return Answer::Failed("The script has no further turn.");
		}
		const Json& Script = Turns[NextTurn++];
		const std::string Difference = FindDifference(Script.value("expect", Json::object()), UserTurn);
		if (!Difference.empty())
		{
			return Answer::Failed("The script " + Difference);
		}

		Answer Result;
		if (Script.contains("command"))
		{
			const Json& Command = Script["command"];
			Result.CommandDelaySeconds = Command.value("delay_seconds", 0.0);
			const bool bOnlyDelay = Command.size() == 1 && Command.contains("delay_seconds");
			if (!bOnlyDelay)
			{
				Result.CommandReply = ReadReply(Command);
			}
		}
		for (const Json& Status : Script.value("status", Json::array()))
		{
			Result.StatusReplies.push_back(ReadReply(Status));
		}
		if (Script.contains("response"))
		{
			Result.StatusReplies.push_back(
				HttpReply::FromJson({ { "status", "COMPLETED" }, { "response", Script["response"] } }));
		}
		return Result;
	}

private:
	const Json Turns;
	size_t NextTurn = 0;
};

class FailedConversation : public Conversation
{
public:
	explicit FailedConversation(std::string InError)
		: Error(std::move(InError))
	{
	}
	Answer Respond(const Turn&) override { return Answer::Failed(Error); }

private:
	const std::string Error;
};
}

ScriptResponder::ScriptResponder(std::string InFolder)
	: Folder(std::move(InFolder))
{
	for (const std::filesystem::directory_entry& Entry : std::filesystem::directory_iterator(Folder))
	{
		if (Entry.path().extension() == ".json")
		{
			LoadScript(Entry.path().string());
		}
	}
}

std::unique_ptr<Conversation> ScriptResponder::Begin(const Turn& FirstTurn) const
{
	const bool bNamed = FirstTurn.Message.compare(0, Prefix.size(), Prefix) == 0;
	const std::string Name = bNamed ? FirstTurn.Message.substr(Prefix.size()) : "";
	if (!IsPlainName(Name))
	{
		return std::make_unique<FailedConversation>("The first message must be \"script NAME\".");
	}
	const std::string Path = Folder + "/" + Name + ".json";
	if (!std::filesystem::exists(Path))
	{
		return std::make_unique<FailedConversation>("There is no script " + Name + ".");
	}
	try
	{
		return std::make_unique<ScriptedConversation>(LoadScript(Path));
	}
	catch (const std::runtime_error& Error)
	{
		return std::make_unique<FailedConversation>(std::string("The script is not valid: ") + Error.what());
	}
}
