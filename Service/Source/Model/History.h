#pragma once

#include "Responder.h"

#include <string>
#include <variant>
#include <vector>

/** A tool that the model wants to use. */
struct ToolCall
{
	std::string Id;
	std::string Name;
	Json Input = Json::object();
	/** Why the input cannot be used, when the server sent no valid JSON object or cut it off; Input is empty then. */
	std::string InputError;
};

/** What came of a tool call. */
struct ToolResult
{
	std::string CallId;
	std::string Content;
	bool bError = false;
};

/** A block that only the server understands, such as signed reasoning, and wants back unchanged. */
struct OpaqueBlock
{
	Json Content;
};

struct TextBlock
{
	std::string Text;
};

using ReplyBlock = std::variant<TextBlock, ToolCall, OpaqueBlock>;

/** What the user's side says: the results of the previous reply's calls, in their order, and then text. */
struct UserMessage
{
	std::vector<ToolResult> Results;
	std::string Text;
};

/** What the model said, its blocks in order. */
struct ModelMessage
{
	std::vector<ReplyBlock> Blocks;

	std::string GetText() const;
	std::vector<const ToolCall*> GetCalls() const;
};

struct Exchange
{
	UserMessage Request;
	ModelMessage Reply;
};

/**
 * A conversation with the model.
 *
 * Users and model alternate by construction, and every tool call of a reply has exactly one result in the message after
 * it, whatever came from the client: a call without a result is given one that says so, and a result without a call
 * becomes text. Model servers refuse a conversation permanently in which that is not so.
 */
class History
{
public:
	/** Adds what the client sent. Several such messages in a row become one. */
	void AddUserMessage(const std::string& Text, const std::vector<ToolResult>& Results);
	/** Replies have at least one block and calls whose ids are unique in the conversation: others are changed. */
	void AddReply(ModelMessage Reply);

	/** Calls of the latest reply, until a user message is added. */
	std::vector<const ToolCall*> GetOpenCalls() const;
	/** The open call with the id, or null. */
	const ToolCall* FindOpenCall(const std::string& Id) const;

	const std::vector<Exchange>& GetExchanges() const { return Exchanges; }
	/** What will be answered next. */
	const UserMessage& GetPending() const { return Pending; }
	std::vector<Exchange>& EditExchanges() { return Exchanges; }
	UserMessage& EditPending() { return Pending; }
	/** Replaces the first exchanges by a summary of them. */
	void Summarize(size_t NumExchanges, const std::string& Summary);

	Json ToJson() const;
	/** @return false, with nothing changed, when it is not what ToJson makes */
	bool FromJson(const Json& Document);

private:
	void MakeIdsUnique(ModelMessage& Reply) const;
	bool IsIdUsed(const std::string& Id) const;

	std::vector<Exchange> Exchanges;
	UserMessage Pending;
	bool bPendingAnswersCalls = false; // the results for the latest reply are in
};

/** Nine letters and digits, which every server takes. */
std::string NewToolCallId();
