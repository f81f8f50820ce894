#include "Server.h"

#include "CommandBody.h"
#include "Log.h"
#include "Metrics.h"

#include <algorithm>
#include <httplib.h>
#include <stdexcept>

namespace
{
/** Requests that are waited for, and those that are answered or delayed at the same time. */
constexpr size_t NumThreads = ConnectionWatch::MostWaiting + 32;

const char* const AnsweredHeader = "Cache-Control";

void Send(const HttpReply& Reply, httplib::Response& Response)
{
	Response.status = Reply.Code;
	Response.set_header(AnsweredHeader, "no-store");
	if (Reply.RetryAfterSeconds > 0)
	{
		Response.set_header("Retry-After", std::to_string(Reply.RetryAfterSeconds));
	}
	if (Reply.bDrop)
	{
		// A length that is never reached: the connection closes in the middle of the body.
		constexpr size_t PromisedBytes = 1000;
		Response.set_content_provider(
			PromisedBytes, Reply.ContentType, [](size_t, size_t, httplib::DataSink&) { return false; });
		return;
	}
	Response.set_content(Reply.Body, Reply.ContentType);
}

HttpReply Refuse(int Code, const std::string& Error)
{
	return HttpReply::FromJson({ { "error", Error } }, Code);
}

/** Only what says its length, and is not packed, is held against the limit before it is read. */
bool RefuseUnlimitedBody(const httplib::Request& Request, httplib::Response& Response)
{
	if (Request.has_header("Transfer-Encoding"))
	{
		Send(Refuse(411, "Send the body with a Content-Length."), Response);
		return true;
	}
	if (Request.has_header("Content-Encoding"))
	{
		Send(Refuse(415, "Send the body without a Content-Encoding."), Response);
		return true;
	}
	return false;
}

/** "Content-Length : 5" is no header to one reader, and a length to another. */
bool HasDoubtfulNames(const httplib::Request& Request)
{
	return std::any_of(Request.headers.begin(), Request.headers.end(),
		[](const auto& Header) { return Header.first.find_first_of(" \t") != std::string::npos; });
}

/** Otherwise the rest of it would be taken for the next request, perhaps of somebody else behind the same proxy. */
bool IsReadToItsEnd(const httplib::Request& Request, const httplib::Response& Response)
{
	// What no handler has answered may be a head that was given up half way.
	const size_t NumLengths = Request.get_header_value_count("Content-Length");
	return Response.has_header(AnsweredHeader) && !Request.has_header("Transfer-Encoding") &&
		   !HasDoubtfulNames(Request) &&
		   (NumLengths == 0 ||
			   (NumLengths == 1 && Request.get_header_value("Content-Length") == std::to_string(Request.body.size())));
}

constexpr size_t MostRequestsOfConnection = 1000;

const char* const KeyHeader = "x-api-key";
}

Server::Server(const Options& InOptions, Backend& InBackend, ModelStore* Store)
	: Settings(InOptions)
	, Certificates(PrepareCertificates(InOptions.StateFolder, InOptions.HostNames))
	, Answers(InBackend)
	, Keys(Store ? std::make_unique<KeyRing>(Store->GetDatabase()) : nullptr)
	, Allowed(Settings, Keys.get())
	, Pages(Allowed, Store)
	, Https(std::make_unique<httplib::SSLServer>(Certificates.Certificate.c_str(), Certificates.PrivateKey.c_str()))
{
	if (!Https->is_valid())
	{
		throw std::runtime_error("The certificate or its key cannot be used: " + Certificates.Certificate);
	}
	Watch = std::make_unique<ConnectionWatch>(Https->ssl_context(), ConnectionWatch::Seconds(Settings.RequestSeconds));
	Https->new_task_queue = [] { return new httplib::ThreadPool(NumThreads); };
	Https->set_payload_max_length(Settings.MaxBodyBytes);
	// Head and body are two packets, and the second would wait until the client has acknowledged the first: 40 ms.
	Https->set_tcp_nodelay(true);
	// A handshake costs as much as many polls. Connections that wait for long are ended by the watch.
	Https->set_keep_alive_max_count(MostRequestsOfConnection);
	AddRoutes();
	const char* const Address = Settings.Listen.c_str();
	Port = Settings.Port == 0 ? Https->bind_to_any_port(Address) : Settings.Port;
	if (Port <= 0 || (Settings.Port != 0 && !Https->bind_to_port(Address, Port)))
	{
		throw std::runtime_error(
			"Port " + std::to_string(Settings.Port) + " of " + Settings.Listen + " is in use or cannot be bound");
	}
}

Server::~Server() = default;

void Server::AddRoutes()
{
	Https->set_pre_routing_handler([this](const httplib::Request& Request, httplib::Response& Response) {
		// Before a body is read: strangers cannot have one kept.
		const bool bPage =
			OperatorPages::IsOwnPath(Request.path) && (Request.method == "GET" || Request.method == "HEAD");
		if (!bPage && (!Admit(Request, Response) || RefuseUnlimitedBody(Request, Response)))
		{
			return httplib::Server::HandlerResponse::Handled;
		}
		return httplib::Server::HandlerResponse::Unhandled;
	});
	Https->Post(R"((?:/.*)?/command)", [this](const httplib::Request& Request, httplib::Response& Response) {
		if (const std::optional<std::string> KeyName = Admit(Request, Response))
		{
			Answer(Response, [&] { return Command(Request, *KeyName); });
		}
	});
	Https->Get(R"((?:/.*)?/status)", [this](const httplib::Request& Request, httplib::Response& Response) {
		if (const std::optional<std::string> KeyName = Admit(Request, Response))
		{
			Answer(Response, [&] { return Answers.Status(Request.get_param_value("request_id"), *KeyName); });
		}
	});
	Pages.AddRoutes(*Https, [this] { Answers.CheckHealth(); });
	Https->set_post_routing_handler([](const httplib::Request& Request, httplib::Response& Response) {
		if (!IsReadToItsEnd(Request, Response))
		{
			Response.headers.erase("Keep-Alive");
			Response.headers.erase("Connection");
			Response.set_header("Connection", "close");
		}
	});
	Https->set_logger([this](const httplib::Request& Request, const httplib::Response& Response) {
		GetMetrics().Add(Metric::HttpRequests, std::to_string(Response.status));
		IsReadToItsEnd(Request, Response) ? Watch->EndReply() : Watch->EndConnection();
	});
	Https->set_error_handler([](const httplib::Request&, httplib::Response& Response) {
		// What a handler has answered stays as it is, an empty body included.
		if (!Response.has_header(AnsweredHeader))
		{
			Response.set_content(
				Json({ { "error", "HTTP " + std::to_string(Response.status) } }).dump(), "application/json");
		}
	});
}

std::optional<std::string> Server::Admit(const httplib::Request& Request, httplib::Response& Response) const
{
	try
	{
		std::optional<std::string> KeyName = Allowed.Admit(Request.get_header_value(KeyHeader));
		if (!KeyName)
		{
			Send(Refuse(401, "The API key is missing or wrong."), Response);
		}
		return KeyName;
	}
	catch (const std::exception& Error)
	{
		WriteLog("keys_cannot_be_read", { { "error", Error.what() } });
		Send(Refuse(503, "The service cannot check API keys now."), Response);
		return std::nullopt;
	}
}

HttpReply Server::Command(const httplib::Request& Request, const std::string& KeyName)
{
	if (!IsUtf8(Request.body))
	{
		return Refuse(400, "The body is not valid UTF-8.");
	}
	std::optional<Turn> UserTurn = ParseCommandBody(Request.body);
	if (!UserTurn)
	{
		return Refuse(400, "The body is not a command.");
	}
	UserTurn->KeyName = KeyName;
	UserTurn->EngineVersion = Request.get_header_value("engine-version");
	UserTurn->ConversationId = Request.get_header_value("conversation-id");
	if (!IsUtf8(UserTurn->ConversationId) || !IsUtf8(UserTurn->EngineVersion))
	{
		return Refuse(400, "A header is not valid UTF-8.");
	}
	return Answers.Command(std::move(*UserTurn));
}

void Server::Answer(httplib::Response& Response, const std::function<HttpReply()>& Make)
{
	Watch->BeginAnswer();
	HttpReply Reply;
	try
	{
		Reply = Make();
		if (Reply.DelaySeconds > 0)
		{
			std::unique_lock Lock(StopMutex);
			Stopping.wait_for(Lock, std::chrono::duration<double>(Reply.DelaySeconds), [this] { return bStopping; });
		}
	}
	catch (const std::exception& Error)
	{
		WriteLog("request_failed", { { "error", Error.what() } });
		Reply = Refuse(500, std::string("The service failed: ") + Error.what());
	}
	Send(Reply, Response);
	Watch->BeginReply();
}

void Server::Run()
{
	Https->listen_after_bind();
}

void Server::Stop()
{
	{
		const std::lock_guard Lock(StopMutex);
		bStopping = true;
	}
	Stopping.notify_all();
	Https->stop();
	Watch->Stop();
}
