#include "ConnectionThreads.h"
#include "CoreMinimal.h"
#include "HAL/HostClock.h"
#include "HttpServerModule.h"
#include "IPAddress.h"
#include "Misc/ConfigCacheIni.h"
#include "Modules/ModuleManager.h"
#include "Utf8.h"

#include <arpa/inet.h>
#include <future>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
constexpr auto AllVerbs = EHttpServerRequestVerbs::VERB_GET | EHttpServerRequestVerbs::VERB_POST |
						  EHttpServerRequestVerbs::VERB_DELETE | EHttpServerRequestVerbs::VERB_OPTIONS;

/** A socket that listens on a port that was free. */
class FTakenPort
{
public:
	FTakenPort()
		: Socket(socket(AF_INET, SOCK_STREAM, 0))
	{
		sockaddr_in Address{};
		Address.sin_family = AF_INET;
		Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
		EXPECT_EQ(bind(Socket, reinterpret_cast<sockaddr*>(&Address), sizeof(Address)), 0);
		EXPECT_EQ(listen(Socket, 1), 0);
		socklen_t Length = sizeof(Address);
		getsockname(Socket, reinterpret_cast<sockaddr*>(&Address), &Length);
		Port = ntohs(Address.sin_port);
	}
	~FTakenPort() { Free(); }
	void Free() { close(std::exchange(Socket, -1)); }

	uint32 Port = 0;

private:
	int Socket;
};

uint32 FindFreePort()
{
	return FTakenPort().Port;
}

std::string BodyOf(const FHttpServerRequest& Request)
{
	return std::string(reinterpret_cast<const char*>(Request.Body.GetData()), Request.Body.Num());
}

class FHttpServerTest : public testing::Test
{
protected:
	FHttpServerTest()
		: Port(FindFreePort())
		, Router(FHttpServerModule::Get().GetHttpRouter(Port, true))
	{
		FHttpServerModule::Get().StartAllListeners();
	}
	~FHttpServerTest() override { FModuleManager::Get().UnloadModule("HTTPServer"); }

	FHttpRouteHandle Bind(const TCHAR* Path, FHttpRequestHandler Handler)
	{
		return Router->BindRoute(FHttpPath(Path), AllVerbs, Handler);
	}
	/** What a client does on a thread of its own, while the module is ticked on this one. */
	template <typename FunctionType>
	auto Talk(FunctionType Function)
	{
		auto Result = std::async(std::launch::async, [this, &Function] {
			httplib::Client Client("127.0.0.1", static_cast<int>(Port));
			return Function(Client);
		});
		while (Result.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
		{
			FHttpServerModule::Get().Tick(0.0f);
		}
		return Result.get();
	}
	int Post(const char* Path, const std::string& Body = "{}")
	{
		return Talk([&](httplib::Client& Client) {
			const httplib::Result Answer = Client.Post(Path, Body, "application/json");
			return Answer ? Answer->status : 0;
		});
	}

	const uint32 Port;
	const TSharedPtr<IHttpRouter> Router;
};

TEST_F(FHttpServerTest, HandsARequestOverAsItCameAndTheAnswerBack)
{
	const std::string Sent = std::string("a\0b", 3) + "\xC3\xA9";
	std::string Received;
	FString RelativePath;
	TArray<FString> Origins;
	FString Peer;
	Bind(TEXT("/mcp"), FHttpRequestHandler::CreateLambda(
						   [&](const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete) {
							   EXPECT_TRUE(IsInGameThread());
							   EXPECT_TRUE(Request.Verb == EHttpServerRequestVerbs::VERB_POST);
							   Received = BodyOf(Request);
							   RelativePath = Request.RelativePath.GetPath();
							   Origins = Request.Headers.FindRef(TEXT("oRiGiN"));
							   Peer = Request.PeerAddress->ToString(false);
							   TUniquePtr<FHttpServerResponse> Response = FHttpServerResponse::Create(
								   FString(TEXT("{\"a\":\"\u00E9\"}")), TEXT("application/json"));
							   Response->Headers.Add(TEXT("Mcp-Session-Id"), { TEXT("one") });
							   OnComplete(MoveTemp(Response));
							   return true;
						   }));
	const httplib::Result Answer = Talk([&](httplib::Client& Client) {
		return Client.Post("/mcp/below", { { "origin", "a, b" }, { "origin", "c" } }, Sent, "application/json");
	});
	ASSERT_TRUE(Answer);
	EXPECT_EQ(Answer->status, 200);
	EXPECT_EQ(Answer->body, "{\"a\":\"\xC3\xA9\"}");
	EXPECT_EQ(Answer->get_header_value("content-type"), "application/json");
	EXPECT_EQ(Answer->get_header_value("mcp-session-id"), "one");
	EXPECT_EQ(Received, Sent);
	EXPECT_EQ(ToUtf8(RelativePath), "/below");
	EXPECT_EQ(Origins.Num(), 2);
	EXPECT_EQ(ToUtf8(Peer), "127.0.0.1");
}

TEST_F(FHttpServerTest, AnswersByItselfWhereThereIsNoRoute)
{
	const FHttpRouteHandle Route = Bind(TEXT("/mcp"),
		FHttpRequestHandler::CreateLambda([](const FHttpServerRequest&, const FHttpResultCallback& OnComplete) {
			TUniquePtr<FHttpServerResponse> Response = MakeUnique<FHttpServerResponse>();
			Response->Code = EHttpServerResponseCodes::Accepted;
			OnComplete(MoveTemp(Response));
			return true;
		}));
	ASSERT_TRUE(Route);
	EXPECT_FALSE(Bind(TEXT("/mcp"), Route->Handler)) << "a path and verb have one handler";
	EXPECT_FALSE(Bind(TEXT("mcp"), Route->Handler)) << "a path starts with a slash";
	EXPECT_EQ(Post("/mcp"), 202);
	EXPECT_EQ(Post("/mcpx"), 404);
	EXPECT_EQ(Post("/mcp?a=b"), 202);
	EXPECT_EQ(Post(("/" + std::string(5000, 'a')).c_str()), 400);
	EXPECT_EQ(Talk([](httplib::Client& Client) { return Client.Put("/mcp", "", "text/plain")->status; }), 404);
	EXPECT_EQ(Talk([](httplib::Client& Client) { return Client.Head("/mcp")->status; }), 400);
	// Without their bodies, which nobody would read: a connection that ends meanwhile may take the answer with it.
	for (const char* Header : { "Transfer-Encoding", "Content-Encoding" })
	{
		EXPECT_EQ(Talk([&](httplib::Client& Client) {
			return Client.Get("/mcp", { { Header, "x" } })->status;
		}),
			400)
			<< Header;
	}
	Router->UnbindRoute(Route);
	EXPECT_EQ(Post("/mcp"), 404);
}

TEST_F(FHttpServerTest, LetsOthersThroughWhileOneWaits)
{
	FHttpResultCallback Waiting;
	Bind(TEXT("/wait"),
		FHttpRequestHandler::CreateLambda([&](const FHttpServerRequest&, const FHttpResultCallback& OnComplete) {
			Waiting = OnComplete;
			return true;
		}));
	Bind(TEXT("/now"),
		FHttpRequestHandler::CreateLambda([&](const FHttpServerRequest&, const FHttpResultCallback& OnComplete) {
			OnComplete(FHttpServerResponse::Create(FString(TEXT("now")), TEXT("text/plain")));
			return true;
		}));
	auto Late = std::async(std::launch::async, [this] {
		httplib::Client Client("127.0.0.1", static_cast<int>(Port));
		return Client.Get("/wait")->body;
	});
	while (!Waiting)
	{
		FHttpServerModule::Get().WaitForRequests(0.01f);
		FHttpServerModule::Get().Tick(0.0f);
	}
	EXPECT_TRUE(FHostClock::Get().IsHeld()) << "time does not jump while a client waits";
	EXPECT_TRUE(FHttpServerModule::Get().HasWaitingRequests());
	for (int32 Round = 0; Round < 20; ++Round)
	{
		EXPECT_EQ(Post("/now"), 200);
	}
	Waiting(FHttpServerResponse::Create(FString(TEXT("late")), TEXT("text/plain")));
	EXPECT_EQ(Late.get(), "late");
	EXPECT_FALSE(FHostClock::Get().IsHeld());
	EXPECT_FALSE(FHttpServerModule::Get().HasWaitingRequests());
}

TEST_F(FHttpServerTest, TellsClientsThatWaitWhenItIsShutDown)
{
	FHttpResultCallback Waiting;
	Bind(TEXT("/wait"),
		FHttpRequestHandler::CreateLambda([&](const FHttpServerRequest&, const FHttpResultCallback& OnComplete) {
			Waiting = OnComplete;
			return true;
		}));
	auto Late = std::async(std::launch::async, [this] {
		httplib::Client Client("127.0.0.1", static_cast<int>(Port));
		return Client.Get("/wait")->status;
	});
	while (!Waiting)
	{
		FHttpServerModule::Get().Tick(0.0f);
	}
	FModuleManager::Get().UnloadModule("HTTPServer");
	EXPECT_EQ(Late.get(), 503);
	EXPECT_FALSE(FHostClock::Get().IsHeld());
	Waiting(nullptr); // nobody is there any more
}

TEST_F(FHttpServerTest, TellsOfATakenPortOnlyWhereItIsAsked)
{
	FTakenPort Taken;
	EXPECT_FALSE(FHttpServerModule::Get().GetHttpRouter(Taken.Port, true));
	EXPECT_TRUE(FHttpServerModule::Get().GetHttpRouter(Taken.Port, false)) << "it is only logged";
	EXPECT_FALSE(FHttpServerModule::Get().GetHttpRouter(70000, true));
	EXPECT_EQ(FHttpServerModule::Get().GetHttpRouter(Port, true), Router) << "one router a port";
}

TEST_F(FHttpServerTest, EndsAlsoWhenItHasHardlyBegun)
{
	for (int32 Round = 0; Round < 200; ++Round)
	{
		FHttpServerModule::Get().GetHttpRouter(FindFreePort(), true);
		FHttpServerModule::Get().StartAllListeners();
		FModuleManager::Get().UnloadModule("HTTPServer");
	}
}

TEST_F(FHttpServerTest, ServesOnWhileMoreClientsComeThanItTakes)
{
	Bind(TEXT("/now"),
		FHttpRequestHandler::CreateLambda([&](const FHttpServerRequest&, const FHttpResultCallback& OnComplete) {
			OnComplete(FHttpServerResponse::Create(FString(TEXT("now")), TEXT("text/plain")));
			return true;
		}));
	// As many as are taken at once, and none says a word: they are given up after some seconds.
	std::vector<std::unique_ptr<int, void (*)(int*)>> Slow;
	for (size_t Index = 0; Index < ConnectionThreads::MaxConnections; ++Index)
	{
		const int Socket = socket(AF_INET, SOCK_STREAM, 0);
		sockaddr_in Address{};
		Address.sin_family = AF_INET;
		Address.sin_port = htons(static_cast<uint16>(Port));
		Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
		ASSERT_EQ(connect(Socket, reinterpret_cast<sockaddr*>(&Address), sizeof(Address)), 0);
		Slow.emplace_back(new int(Socket), [](int* Each) {
			close(*Each);
			delete Each;
		});
	}
	EXPECT_EQ(Talk([](httplib::Client& Client) {
		Client.set_connection_timeout(30);
		Client.set_read_timeout(30);
		const httplib::Result Answer = Client.Get("/now");
		return Answer ? Answer->status : 0;
	}),
		200);
}
}
