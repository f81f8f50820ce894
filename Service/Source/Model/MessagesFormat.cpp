#include "MessagesFormat.h"

#include "MessagesReply.h"

namespace
{
Json MakeUserMessage(const UserMessage& Message)
{
	Json Content = Json::array();
	for (const ToolResult& Each : Message.Results)
	{
		Json Result = { { "type", "tool_result" }, { "tool_use_id", Each.CallId }, { "content", Each.Content } };
		if (Each.bError)
		{
			Result["is_error"] = true;
		}
		Content.push_back(Result);
	}
	// Behind the results: servers want these first.
	if (!Message.Text.empty())
	{
		Content.push_back({ { "type", "text" }, { "text", Message.Text } });
	}
	return { { "role", "user" }, { "content", Content } };
}

Json MakeBlock(const TextBlock& Block)
{
	// Text that ends in whitespace is refused where it ends a message.
	const std::string Text = Block.Text.substr(0, Block.Text.find_last_not_of(" \t\r\n") + 1);
	return { { "type", "text" }, { "text", Text } };
}

Json MakeBlock(const ToolCall& Block)
{
	return { { "type", "tool_use" }, { "id", Block.Id }, { "name", Block.Name }, { "input", Block.Input } };
}

Json MakeBlock(const OpaqueBlock& Block)
{
	return Block.Content;
}

Json MakeModelMessage(const ModelMessage& Message)
{
	Json Content = Json::array();
	for (const ReplyBlock& Each : Message.Blocks)
	{
		Content.push_back(std::visit([](const auto& Kind) { return MakeBlock(Kind); }, Each));
	}
	return { { "role", "assistant" }, { "content", Content } };
}
}

UpstreamRequest MessagesFormat::MakeRequest(const ModelServer& Server, const ModelRequest& Request) const
{
	Json Messages = Json::array();
	static const std::vector<Exchange> None;
	for (const Exchange& Each : Request.Exchanges ? *Request.Exchanges : None)
	{
		Messages.push_back(MakeUserMessage(Each.Request));
		Messages.push_back(MakeModelMessage(Each.Reply));
	}
	Messages.push_back(MakeUserMessage(*Request.Pending));

	Json Body = { { "model", Server.Model }, { "max_tokens", Request.MaxOutputTokens }, { "system", Request.System },
		{ "messages", Messages } };
	if (Request.Tools && !Request.Tools->empty())
	{
		Body["tools"] = *Request.Tools;
	}
	if (Server.Temperature)
	{
		Body["temperature"] = *Server.Temperature;
	}
	Body["stream"] = true;

	UpstreamRequest Result{ Server.BaseUrl + "/messages",
		{ "Content-Type: application/json", "Accept: text/event-stream", "anthropic-version: " + Server.ApiVersion },
		ToRequestBody(Body) };
	if (!Server.Key.IsEmpty())
	{
		Result.Headers.push_back("x-api-key: " + Server.Key.Reveal());
	}
	return Result;
}

std::unique_ptr<ReplyAssembler> MessagesFormat::MakeAssembler() const
{
	return std::make_unique<MessagesReply>();
}
