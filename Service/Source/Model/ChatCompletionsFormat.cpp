#include "ChatCompletionsFormat.h"

#include "ChatCompletionsReply.h"

namespace
{
void AddUserMessage(const UserMessage& Message, Json& Messages)
{
	for (const ToolResult& Each : Message.Results)
	{
		Messages.push_back({ { "role", "tool" }, { "tool_call_id", Each.CallId }, { "content", Each.Content } });
	}
	if (!Message.Text.empty())
	{
		// A plain string: servers without images know no arrays of parts.
		Messages.push_back({ { "role", "user" }, { "content", Message.Text } });
	}
}

Json MakeCall(const ToolCall& Call)
{
	return { { "id", Call.Id }, { "type", "function" },
		{ "function", { { "name", Call.Name }, { "arguments", ToRequestBody(Call.Input) } } } };
}

Json MakeModelMessage(const ModelMessage& Message)
{
	// Templates of some servers fail on a null content, others on a missing one.
	Json Result = { { "role", "assistant" }, { "content", Message.GetText() } };
	for (const ToolCall* Call : Message.GetCalls())
	{
		Result["tool_calls"].push_back(MakeCall(*Call));
	}
	return Result;
}

Json MakeMessages(const ModelRequest& Request)
{
	Json Messages = Json::array({ { { "role", "system" }, { "content", Request.System } } });
	static const std::vector<Exchange> None;
	for (const Exchange& Each : Request.Exchanges ? *Request.Exchanges : None)
	{
		AddUserMessage(Each.Request, Messages);
		Messages.push_back(MakeModelMessage(Each.Reply));
	}
	AddUserMessage(*Request.Pending, Messages);
	return Messages;
}

Json MakeTools(const Json& Tools)
{
	Json Result = Json::array();
	for (const Json& Each : Tools)
	{
		Result.push_back(
			{ { "type", "function" }, { "function", { { "name", Each["name"] }, { "description", Each["description"] },
														{ "parameters", Each["input_schema"] } } } });
	}
	return Result;
}
}

UpstreamRequest ChatCompletionsFormat::MakeRequest(const ModelServer& Server, const ModelRequest& Request) const
{
	Json Body = { { "model", Server.Model }, { "messages", MakeMessages(Request) } };
	if (Request.Tools && !Request.Tools->empty())
	{
		Body["tools"] = MakeTools(*Request.Tools);
	}
	Body[Server.OutputTokensField] = Request.MaxOutputTokens;
	if (Server.Temperature)
	{
		Body["temperature"] = *Server.Temperature;
	}
	Body["stream"] = true;
	Body["stream_options"] = { { "include_usage", true } };

	UpstreamRequest Result{ Server.BaseUrl + "/chat/completions",
		{ "Content-Type: application/json", "Accept: text/event-stream" }, ToRequestBody(Body) };
	if (!Server.Key.IsEmpty())
	{
		Result.Headers.push_back("Authorization: Bearer " + Server.Key.Reveal());
	}
	return Result;
}

std::unique_ptr<ReplyAssembler> ChatCompletionsFormat::MakeAssembler() const
{
	return std::make_unique<ChatCompletionsReply>();
}
