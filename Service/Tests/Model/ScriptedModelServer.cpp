#include "ScriptedModelServer.h"

#include "JsonFields.h"

#include <arpa/inet.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
void AppendEvent(std::string& Stream, ModelFormat Format, const Json& Event)
{
	const bool bNamed = Format == ModelFormat::Messages;
	Stream += (bNamed ? "event: " + GetText(Event, "type") + "\n" : "") + "data: " + Event.dump() + "\n\n";
}

std::string RenderChat(const Json& Said)
{
	std::string Stream;
	const auto AddDelta = [&Stream](const Json& Delta, const Json& Reason) {
		AppendEvent(Stream, ModelFormat::ChatCompletions,
			{ { "choices", Json::array({ { { "index", 0 }, { "delta", Delta }, { "finish_reason", Reason } } }) },
				{ "usage", nullptr } });
	};
	AddDelta({ { "role", "assistant" }, { "content", "" } }, nullptr);
	AddDelta({ { "content", GetText(Said, "text") } }, nullptr);
	const Json& Calls = GetList(Said, "calls");
	for (size_t Index = 0; Index < Calls.size(); ++Index)
	{
		const Json Function = { { "name", Calls[Index]["name"] }, { "arguments", "" } };
		AddDelta({ { "tool_calls", Json::array({ { { "index", Index }, { "id", Calls[Index]["id"] },
									   { "type", "function" }, { "function", Function } } }) } },
			nullptr);
		const std::string Arguments = Calls[Index]["input"].dump();
		for (const std::string& Part : { Arguments.substr(0, 2), Arguments.substr(2) })
		{
			AddDelta({ { "tool_calls",
						 Json::array({ { { "index", Index }, { "function", { { "arguments", Part } } } } }) } },
				nullptr);
		}
	}
	AddDelta(Json::object(), Calls.empty() ? "stop" : "tool_calls");
	const Json& Usage = GetMember(Said, "usage");
	AppendEvent(Stream, ModelFormat::ChatCompletions,
		{ { "choices", Json::array() }, { "usage", { { "prompt_tokens", GetCount(Usage, "input") },
													   { "completion_tokens", GetCount(Usage, "output") } } } });
	return Stream + "data: [DONE]\n\n";
}

std::string RenderMessages(const Json& Said)
{
	std::string Stream;
	const auto Add = [&Stream](const Json& Event) { AppendEvent(Stream, ModelFormat::Messages, Event); };
	const Json& Usage = GetMember(Said, "usage");
	Add({ { "type", "message_start" },
		{ "message", { { "role", "assistant" }, { "content", Json::array() },
						 { "usage", { { "input_tokens", GetCount(Usage, "input") }, { "output_tokens", 1 } } } } } });
	int Index = 0;
	if (const std::string Text = GetText(Said, "text"); !Text.empty())
	{
		Add({ { "type", "content_block_start" }, { "index", Index },
			{ "content_block", { { "type", "text" }, { "text", "" } } } });
		Add({ { "type", "content_block_delta" }, { "index", Index },
			{ "delta", { { "type", "text_delta" }, { "text", Text } } } });
		Add({ { "type", "content_block_stop" }, { "index", Index++ } });
	}
	for (const Json& Call : GetList(Said, "calls"))
	{
		Add({ { "type", "content_block_start" }, { "index", Index },
			{ "content_block", { { "type", "tool_use" }, { "id", Call["id"] }, { "name", Call["name"] },
								   { "input", Json::object() } } } });
		const std::string Input = Call["input"].dump();
		for (const std::string& Part : { Input.substr(0, 2), Input.substr(2) })
		{
			Add({ { "type", "content_block_delta" }, { "index", Index },
				{ "delta", { { "type", "input_json_delta" }, { "partial_json", Part } } } });
		}
		Add({ { "type", "content_block_stop" }, { "index", Index++ } });
	}
	Add({ { "type", "message_delta" },
		{ "delta", { { "stop_reason", GetList(Said, "calls").empty() ? "end_turn" : "tool_use" } } },
		{ "usage", { { "output_tokens", GetCount(Usage, "output") } } } });
	Add({ { "type", "message_stop" } });
	return Stream;
}

void SendAll(int Connection, const std::string& Bytes, bool bByteByByte)
{
	const size_t Step = bByteByByte ? 1 : Bytes.size();
	for (size_t At = 0; At < Bytes.size();)
	{
		const ssize_t Sent = send(Connection, Bytes.data() + At, std::min(Step, Bytes.size() - At), MSG_NOSIGNAL);
		if (Sent <= 0)
		{
			return;
		}
		At += static_cast<size_t>(Sent);
	}
}

/** Head and body of a request; an empty head when the client was gone. */
std::pair<std::string, std::string> Receive(int Connection)
{
	std::string Bytes;
	char Buffer[1 << 16];
	size_t Needed = std::string::npos;
	while (Bytes.size() < Needed)
	{
		const ssize_t Read = recv(Connection, Buffer, sizeof(Buffer), 0);
		if (Read <= 0)
		{
			return {};
		}
		Bytes.append(Buffer, static_cast<size_t>(Read));
		const size_t HeadEnd = Bytes.find("\r\n\r\n");
		const size_t LengthAt = Bytes.find("Content-Length: ");
		if (HeadEnd != std::string::npos)
		{
			const size_t Length = LengthAt < HeadEnd ? std::stoul(Bytes.substr(LengthAt + 16)) : 0;
			Needed = HeadEnd + 4 + Length;
		}
	}
	const size_t HeadEnd = Bytes.find("\r\n\r\n");
	return { Bytes.substr(0, HeadEnd + 2), Bytes.substr(HeadEnd + 4) };
}
}

std::string RenderStream(ModelFormat Format, const Json& Said)
{
	return Format == ModelFormat::Messages ? RenderMessages(Said) : RenderChat(Said);
}

ScriptedModelServer::ScriptedModelServer(ModelFormat InFormat, std::vector<ScriptedReply> InReplies)
	: Format(InFormat)
	, Replies(std::move(InReplies))
{
	Listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
	sockaddr_in Address = {};
	Address.sin_family = AF_INET;
	Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
	socklen_t Size = sizeof(Address);
	if (bind(Listener, reinterpret_cast<sockaddr*>(&Address), Size) != 0 || listen(Listener, 64) != 0 ||
		getsockname(Listener, reinterpret_cast<sockaddr*>(&Address), &Size) != 0)
	{
		throw std::runtime_error("The scripted model server has no port");
	}
	Port = ntohs(Address.sin_port);
	Thread = std::thread([this] { Serve(); });
}

ScriptedModelServer::~ScriptedModelServer()
{
	shutdown(Listener, SHUT_RDWR);
	Thread.join();
	close(Listener);
	for (const int Connection : Silent)
	{
		close(Connection);
	}
}

void ScriptedModelServer::Add(ScriptedReply Reply)
{
	const std::lock_guard Lock(Mutex);
	Replies.push_back(std::move(Reply));
}

std::vector<Json> ScriptedModelServer::GetRequests() const
{
	const std::lock_guard Lock(Mutex);
	return Requests;
}

bool ScriptedModelServer::WaitForHangUp() const
{
	constexpr int LongestMilliseconds = 20000;
	int Connection = -1;
	while (Connection < 0)
	{
		std::this_thread::yield();
		const std::lock_guard Lock(Mutex);
		Connection = Silent.empty() ? -1 : Silent.back();
	}
	pollfd Waiting = { Connection, POLLIN, 0 };
	return poll(&Waiting, 1, LongestMilliseconds) == 1;
}

std::string ScriptedModelServer::GetProblems() const
{
	const std::lock_guard Lock(Mutex);
	return Problems;
}

void ScriptedModelServer::Serve()
{
	for (int Connection = 0; (Connection = accept4(Listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;)
	{
		ServeOne(Connection);
	}
}

void ScriptedModelServer::ServeOne(int Connection)
{
	const auto [Head, Body] = Receive(Connection);
	if (Head.empty())
	{
		close(Connection);
		return;
	}
	ScriptedReply Reply;
	{
		const std::lock_guard Lock(Mutex);
		Requests.push_back(ParseUntrustedJson(Body));
		const std::string Problem = FindRequestProblem(Format, Head, Requests.back());
		Problems += Problem.empty() ? "" : "request " + std::to_string(Requests.size()) + ": " + Problem + "\n";
		if (NextReply < Replies.size())
		{
			Reply = Replies[NextReply++];
		}
		else
		{
			Problems += "request " + std::to_string(Requests.size()) + " was not expected\n";
			Reply.Head = "HTTP/1.1 400 Bad Request\r\n\r\n";
		}
	}
	SendAll(Connection, Reply.Head, false);
	SendAll(Connection, Reply.Body, Reply.bByteByByte);
	if (Reply.End == ScriptedReply::Ending::Silence)
	{
		const std::lock_guard Lock(Mutex);
		Silent.push_back(Connection);
		return;
	}
	if (Reply.End == ScriptedReply::Ending::Reset)
	{
		const linger Abort = { 1, 0 };
		setsockopt(Connection, SOL_SOCKET, SO_LINGER, &Abort, sizeof(Abort));
	}
	close(Connection);
}
