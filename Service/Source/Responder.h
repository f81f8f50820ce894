#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

/** Members keep the order in which they are set, so that answers read the same each time. */
using Json = nlohmann::ordered_json;

/** What a reply to one HTTP request looks like. */
struct HttpReply
{
	int Code = 200;
	std::string Body;
	std::string ContentType = "application/json";
	double DelaySeconds = 0.0;
	int RetryAfterSeconds = 0; // 0 says nothing
	/** Close the connection in the middle instead of answering. */
	bool bDrop = false;

	/** Bytes that are no UTF-8, as in the name of a file, become U+FFFD. */
	static HttpReply FromJson(const Json& Value, int Code = 200)
	{
		return { Code, Value.dump(-1, ' ', false, Json::error_handler_t::replace) };
	}
};

/** What the user's side sent in one turn. */
struct Turn
{
	std::string KeyName; // of the API key; empty where keys have no names
	std::string ConversationId;
	std::string RequestId;     // of the polls for its answer
	std::string EngineVersion; // "5.4", as the client says
	std::string Message;
	Json FileStructure; // null unless it came
	Json ToolResults;   // an array, or null
	bool bConfirmationMode = true;
	std::optional<bool> WasConfirmed;
};

/** How a turn is answered: the reply to the command, and the replies to the status polls. */
struct Answer
{
	/** Instead of the usual reply with a request id. */
	std::optional<HttpReply> CommandReply;
	double CommandDelaySeconds = 0.0;
	/** Replies to the first polls, in order; the last one is repeated. */
	std::vector<HttpReply> StatusReplies;

	static Answer Completed(const Json& Response);
	static Answer Failed(const std::string& Error);
};

/** One conversation, seen from the side that answers. */
class Conversation
{
public:
	virtual ~Conversation() = default;
	virtual Answer Respond(const Turn& UserTurn) = 0;
};

/** Makes conversations. Called from several threads. */
class Responder
{
public:
	virtual ~Responder() = default;
	virtual std::unique_ptr<Conversation> Begin(const Turn& FirstTurn) const = 0;
};
