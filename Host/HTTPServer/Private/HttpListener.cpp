#include "HttpListener.h"

#include "Containers/StringConv.h"
#include "CoreGlobals.h"
#include "HAL/HostClock.h"

#include <algorithm>
#include <sys/socket.h>

DEFINE_LOG_CATEGORY_STATIC(LogHttpListener, Log, All);

namespace HttpListener
{
constexpr time_t ReadTimeoutSeconds = 5;
constexpr time_t KeepAliveSeconds = 2; // which the end of the server may have to wait for
constexpr size_t KeepAliveMaxRequests = 1000;
// The library matches paths with a regular expression, which recurses for each character.
constexpr size_t MaxPathLength = 1024;
constexpr size_t MaxBodyBytes = 512 * 1024 * 1024;

/** A port has one server: with the library's own options several programs could listen on it, and take turns. */
void ShareNothing(socket_t Socket)
{
	const int Yes = 1;
	setsockopt(Socket, SOL_SOCKET, SO_REUSEADDR, &Yes, sizeof(Yes));
}

std::string ToUtf8(const FString& Text)
{
	const FTCHARToUTF8 Utf8(*Text, Text.Len());
	return std::string(Utf8.Get(), Utf8.Length());
}
}

FHttpListener::FHttpListener(uint32 InPort, FArrivals& InArrivals)
	: Port(InPort)
	, Arrivals(InArrivals)
{
	Server.set_socket_options(HttpListener::ShareNothing);
	Server.set_tcp_nodelay(true);
	Server.set_read_timeout(HttpListener::ReadTimeoutSeconds);
	Server.set_keep_alive_timeout(HttpListener::KeepAliveSeconds);
	Server.set_keep_alive_max_count(HttpListener::KeepAliveMaxRequests);
	Server.set_payload_max_length(HttpListener::MaxBodyBytes);
	Server.new_task_queue = ConnectionThreads::Make;
	Server.set_pre_routing_handler([this](const httplib::Request& Request, httplib::Response& Response) {
		return Accept(Request, Response) ? httplib::Server::HandlerResponse::Unhandled
										 : httplib::Server::HandlerResponse::Handled;
	});
	const auto ServeRequest = [this](const httplib::Request& Request, httplib::Response& Response) {
		Serve(Request, Response);
	};
	const char* const AnyPath = ".*";
	Server.Get(AnyPath, ServeRequest);
	Server.Post(AnyPath, ServeRequest);
	Server.Put(AnyPath, ServeRequest);
	Server.Patch(AnyPath, ServeRequest);
	Server.Delete(AnyPath, ServeRequest);
	Server.Options(AnyPath, ServeRequest);
}

FHttpListener::~FHttpListener()
{
	{
		const std::lock_guard<std::mutex> Lock(Mutex);
		bClosed = true;
		for (const FExchangePtr& Exchange : Arrived)
		{
			Exchange->Respond(nullptr);
		}
	}
	for (const FExchangePtr& Exchange : Waiting)
	{
		FHostClock::Get().Release();
		Exchange->Respond(nullptr);
	}
	// The library does not stop a server that has yet to begin.
	while (Thread.joinable() && !Server.is_running() && !bEnded)
	{
		std::this_thread::yield();
	}
	Server.stop();
	if (Thread.joinable())
	{
		Thread.join();
	}
}

bool FHttpListener::Bind(const FString& Address)
{
	bBound = bBound ||
			 (Port > 0 && Port <= 65535 && Server.bind_to_port(HttpListener::ToUtf8(Address), static_cast<int>(Port)));
	UE_CLOG(!bBound, LogHttpListener, Error, TEXT("HttpListener unable to bind to %s:%u"), *Address, Port);
	return bBound;
}

void FHttpListener::Start()
{
	if (bBound && !Thread.joinable())
	{
		Thread = std::thread([this] {
			Server.listen_after_bind();
			bEnded = true;
		});
	}
}

bool FHttpListener::Accept(const httplib::Request& Request, httplib::Response& OutResponse) const
{
	// What the module does not know: the verb HEAD, bodies in chunks, compressed bodies.
	const bool bUnknown = Request.method == "HEAD" || Request.has_header("Transfer-Encoding") ||
						  Request.has_header("Content-Encoding") || Request.path.size() > HttpListener::MaxPathLength;
	if (bUnknown)
	{
		OutResponse.status = static_cast<int>(EHttpServerResponseCodes::BadRequest);
		OutResponse.set_header("Connection", "close");
	}
	return !bUnknown;
}

void FHttpListener::Serve(const httplib::Request& Request, httplib::Response& OutResponse)
{
	FHttpExchange::FArrived Parts{ Request.method, Request.path, {}, Request.body, Request.remote_addr,
		Request.remote_port };
	for (const auto& [Name, Value] : Request.headers)
	{
		// These are the library's own.
		if (Name != "REMOTE_ADDR" && Name != "REMOTE_PORT" && Name != "LOCAL_ADDR" && Name != "LOCAL_PORT")
		{
			Parts.Headers.emplace(Name, Value);
		}
	}
	const FExchangePtr Exchange = std::make_shared<FHttpExchange>(std::move(Parts));
	OutResponse.status = static_cast<int>(EHttpServerResponseCodes::ServiceUnavail);
	{
		const std::lock_guard<std::mutex> Lock(Mutex);
		if (bClosed)
		{
			return;
		}
		Arrived.push_back(Exchange);
	}
	{
		const std::lock_guard<std::mutex> Lock(Arrivals.Mutex);
		Arrivals.bAny = true;
		Arrivals.Changed.notify_all();
	}
	const TUniquePtr<FHttpServerResponse> Response = Exchange->WaitForResponse();
	if (!Response)
	{
		return;
	}
	OutResponse.status = static_cast<int>(Response->Code);
	OutResponse.body.assign(reinterpret_cast<const char*>(Response->Body.GetData()), Response->Body.Num());
	for (const auto& Pair : Response->Headers)
	{
		OutResponse.set_header(
			HttpListener::ToUtf8(Pair.Key), HttpListener::ToUtf8(FString::Join(Pair.Value, TEXT(","))));
	}
}

bool FHttpListener::HasWaitingRequests()
{
	const std::lock_guard<std::mutex> Lock(Mutex);
	return !Waiting.empty() || !Arrived.empty();
}

void FHttpListener::Tick()
{
	std::vector<FExchangePtr> Taken;
	{
		const std::lock_guard<std::mutex> Lock(Mutex);
		Taken.swap(Arrived);
	}
	for (const FExchangePtr& Exchange : Taken)
	{
		Waiting.push_back(Exchange);
		FHostClock::Get().Hold();
		Handle(Exchange);
	}
}

void FHttpListener::Answer(const FExchangePtr& Exchange, TUniquePtr<FHttpServerResponse>&& Response)
{
	checkf(IsInGameThread(), TEXT("A request is answered on the game thread"));
	FHostClock::Get().Release();
	Waiting.erase(std::remove(Waiting.begin(), Waiting.end(), Exchange), Waiting.end());
	Exchange->Respond(MoveTemp(Response));
}

void FHttpListener::Handle(const FExchangePtr& Exchange)
{
	FHttpServerRequest Request;
	Exchange->MakeRequest(Request);
	const FString Path = Exchange->GetPath();
	const FHttpRouteHandle Route = Router->Find(Path, Request.Verb);
	bool bHandled = false;
	if (Route && Route->Handler.IsBound())
	{
		Request.RelativePath.SetPath(Path.Mid(Route->Path.Len()));
		// An answer may come when this listener is gone; the client has had its 503 then.
		const std::weak_ptr<FHttpExchange> WeakExchange = Exchange;
		const auto NumAnswers = std::make_shared<int32>(0);
		bHandled = Route->Handler.Execute(
			Request, [this, WeakExchange, NumAnswers](TUniquePtr<FHttpServerResponse>&& Response) {
				checkf(++*NumAnswers == 1, TEXT("A request is answered once"));
				if (const FExchangePtr Pinned = WeakExchange.lock())
				{
					Answer(Pinned, MoveTemp(Response));
				}
			});
		checkf(bHandled || !Exchange->IsAnswered(), TEXT("A handler that answers returns true"));
	}
	if (!bHandled)
	{
		TUniquePtr<FHttpServerResponse> NotFound = MakeUnique<FHttpServerResponse>();
		NotFound->Code = EHttpServerResponseCodes::NotFound;
		Answer(Exchange, MoveTemp(NotFound));
	}
}
