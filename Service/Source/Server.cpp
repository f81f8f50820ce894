#include "Server.h"

#include "CommandBody.h"

#include <httplib.h>
#include <iostream>
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

/** The same time for every wrong key. */
bool IsSameKey(const std::string& A, const std::string& B)
{
	unsigned Difference = static_cast<unsigned>(A.size() ^ B.size());
	for (size_t Index = 0; Index < A.size(); ++Index)
	{
		Difference |=
			static_cast<unsigned char>(A[Index]) ^ static_cast<unsigned char>(B.empty() ? 0 : B[Index % B.size()]);
	}
	return Difference == 0;
}
}

Server::Server(const Options& InOptions, Backend& InBackend)
	: Settings(InOptions)
	, Certificates(PrepareCertificates(InOptions.StateFolder, InOptions.HostNames))
	, Answers(InBackend)
	, Https(std::make_unique<httplib::SSLServer>(Certificates.Certificate.c_str(), Certificates.PrivateKey.c_str()))
{
	if (!Https->is_valid())
	{
		throw std::runtime_error("The certificate or its key cannot be used: " + Certificates.Certificate);
	}
	Watch = std::make_unique<ConnectionWatch>(Https->ssl_context(), ConnectionWatch::Seconds(Settings.RequestSeconds));
	Https->new_task_queue = [] { return new httplib::ThreadPool(NumThreads); };
	Https->set_payload_max_length(Settings.MaxBodyBytes);
	AddRoutes();
	Port = Settings.Port == 0 ? Https->bind_to_any_port("127.0.0.1") : Settings.Port;
	if (Port <= 0 || (Settings.Port != 0 && !Https->bind_to_port("127.0.0.1", Port)))
	{
		throw std::runtime_error("Port " + std::to_string(Settings.Port) + " is in use or cannot be bound");
	}
}

Server::~Server() = default;

void Server::AddRoutes()
{
	Https->set_pre_routing_handler([this](const httplib::Request& Request, httplib::Response& Response) {
		if (!Settings.ApiKey.empty() && !IsSameKey(Request.get_header_value("x-api-key"), Settings.ApiKey))
		{
			Send(Refuse(401, "The API key is missing or wrong."), Response);
			return httplib::Server::HandlerResponse::Handled;
		}
		return httplib::Server::HandlerResponse::Unhandled;
	});
	Https->Post(R"((?:/.*)?/command)", [this](const httplib::Request& Request, httplib::Response& Response) {
		Answer(Response, [&] { return Command(Request); });
	});
	Https->Get(R"((?:/.*)?/status)", [this](const httplib::Request& Request, httplib::Response& Response) {
		Answer(Response, [&] { return Answers.Status(Request.get_param_value("request_id"), ""); });
	});
	Https->set_logger([this](const httplib::Request&, const httplib::Response&) { Watch->EndReply(); });
	Https->set_error_handler([](const httplib::Request&, httplib::Response& Response) {
		// What a handler has answered stays as it is, an empty body included.
		if (!Response.has_header(AnsweredHeader))
		{
			Response.set_content(
				Json({ { "error", "HTTP " + std::to_string(Response.status) } }).dump(), "application/json");
		}
	});
}

HttpReply Server::Command(const httplib::Request& Request)
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
		std::unique_lock Lock(StopMutex);
		Stopping.wait_for(Lock, std::chrono::duration<double>(Reply.DelaySeconds), [this] { return bStopping; });
	}
	catch (const std::exception& Error)
	{
		std::cerr << "A request failed: " << Error.what() << std::endl;
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
