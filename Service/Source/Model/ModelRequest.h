#pragma once

#include "History.h"
#include "HttpTransfer.h"

#include <memory>
#include <optional>
#include <string>

/** What the model is asked, in no server's format yet. */
struct ModelRequest
{
	std::string System;
	const std::vector<Exchange>* Exchanges = nullptr; // null for none
	const UserMessage* Pending = nullptr;
	/** Tools as the catalog has them: objects with name, description and input_schema. */
	const Json* Tools = nullptr;
	int MaxOutputTokens = 0;
};

/** Tokens as the server counts them; 0 where it does not say. */
struct ModelUsage
{
	int64_t Input = 0; // all of it
	int64_t CachedInput = 0;
	int64_t Output = 0;
};

enum class ReplyEnd
{
	Finished, // the model is done, or wants its tools to run
	CutOff,   // the limit of output tokens was reached: the last call may be incomplete
	Withheld, // the server or the model declined
};

struct ModelReply
{
	ModelMessage Message;
	ReplyEnd End = ReplyEnd::Finished;
	ModelUsage Usage;
};

/** Puts a reply together from its JSON objects: the events of a stream, or the one body of a reply that is none. */
class ReplyAssembler
{
public:
	virtual ~ReplyAssembler() = default;
	/** The data of an event. An end mark that is no JSON is an event too. */
	virtual void AddEvent(const std::string& Data) = 0;
	virtual void AddWholeReply(const Json& Body) = 0;
	/** @return the reply, or nothing when its end has not come */
	virtual std::optional<ModelReply> Finish() = 0;

	/** The text so far, for somebody who waits. */
	const std::string& GetText() const { return Text; }
	/** Set once the server has reported an error. */
	const std::optional<UpstreamFault>& GetFault() const { return Fault; }

protected:
	std::string Text;
	ModelUsage Usage;
	bool bEnded = false;
	std::optional<UpstreamFault> Fault;
};

/** One of the request formats that model servers share. */
class RequestFormat
{
public:
	virtual ~RequestFormat() = default;
	virtual UpstreamRequest MakeRequest(const ModelServer& Server, const ModelRequest& Request) const = 0;
	virtual std::unique_ptr<ReplyAssembler> MakeAssembler() const = 0;

	static const RequestFormat& Get(ModelFormat Format);
};

/** As text for a request's body; bytes that are no UTF-8, as in the name of a file, become U+FFFD. */
inline std::string ToRequestBody(const Json& Body)
{
	return Body.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/** The input of a call from the text that the server sent for it; an empty text is an empty object. */
void SetInput(ToolCall& Call, const std::string& Arguments);
