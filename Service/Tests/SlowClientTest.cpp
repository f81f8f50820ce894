#include "OfflineResponder.h"
#include "RunningServer.h"
#include "ScriptResponder.h"

#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace
{
constexpr size_t PoolOfOld = 32; // as many as once held the service up

/** A client that sends the beginning of something and then nothing more. */
class SlowClient
{
public:
	enum class Kind
	{
		Silent,    // not even a handshake
		Handshake, // half of one
		Head,
		Body,
		Whole, // says what Ask is given
	};

	SlowClient(int Port, Kind How)
		: Socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
	{
		sockaddr_in Address = {};
		Address.sin_family = AF_INET;
		Address.sin_port = htons(static_cast<uint16_t>(Port));
		Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
		EXPECT_EQ(connect(Socket, reinterpret_cast<sockaddr*>(&Address), sizeof(Address)), 0);
		if (How == Kind::Handshake)
		{
			const char RecordHeader[] = { 22, 3, 1, 1, 0 };
			EXPECT_EQ(send(Socket, RecordHeader, sizeof(RecordHeader), 0), ssize_t(sizeof(RecordHeader)));
		}
		if (How == Kind::Head || How == Kind::Body || How == Kind::Whole)
		{
			Ssl = SSL_new(Context());
			SSL_set_fd(Ssl, Socket);
			EXPECT_EQ(SSL_connect(Ssl), 1);
		}
		if (How == Kind::Head || How == Kind::Body)
		{
			const std::string Head = "POST /command HTTP/1.1\r\nHost: localhost\r\nContent-Length: 100\r\n";
			const std::string Sent = How == Kind::Head ? Head : Head + "\r\n{\"mess";
			SSL_write(Ssl, Sent.data(), static_cast<int>(Sent.size()));
		}
	}
	~SlowClient()
	{
		SSL_free(Ssl);
		close(Socket);
	}
	SlowClient(const SlowClient&) = delete;
	SlowClient& operator=(const SlowClient&) = delete;

	/** Sends a head, and the body when the reply to the head has come. Returns all that comes until the end. */
	std::string Ask(const std::string& Head, const std::string& Body) const
	{
		SSL_write(Ssl, Head.data(), static_cast<int>(Head.size()));
		std::string Replies;
		char Buffer[4096];
		for (int Count = 0; (Count = SSL_read(Ssl, Buffer, sizeof(Buffer))) > 0;)
		{
			if (Replies.empty())
			{
				SSL_write(Ssl, Body.data(), static_cast<int>(Body.size()));
			}
			Replies.append(Buffer, static_cast<size_t>(Count));
		}
		return Replies;
	}
	/** A further byte of its body. */
	void Trickle() const { SSL_write(Ssl, "a", 1); }
	/** Whether the service closes the connection within that time. */
	bool IsEndedWithin(int Milliseconds) const
	{
		pollfd Waiting = { Socket, POLLRDHUP, 0 };
		return poll(&Waiting, 1, Milliseconds) > 0;
	}

private:
	static SSL_CTX* Context()
	{
		static const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> Made(
			SSL_CTX_new(TLS_client_method()), &SSL_CTX_free);
		return Made.get();
	}

	const int Socket;
	SSL* Ssl = nullptr;
};

using SlowClients = std::vector<std::unique_ptr<SlowClient>>;

SlowClients MakeSlowClients(int Port, size_t Count)
{
	SlowClients Made;
	for (size_t Index = 0; Index < Count; ++Index)
	{
		Made.push_back(std::make_unique<SlowClient>(Port, static_cast<SlowClient::Kind>(Index % 4)));
	}
	return Made;
}

double SecondsOf(const std::function<void()>& Work)
{
	const auto Start = std::chrono::steady_clock::now();
	Work();
	return std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
}
}

TEST(SlowClientTest, ABodyIsNeverTakenForARequest)
{
	Options Settings;
	Settings.ApiKey = "right";
	Settings.RequestSeconds = 2.0; // what announces a body may have to wait for it
	RunningServer Service(AnswerWith<OfflineResponder>(), Settings);
	const std::string Inner = "GET /health HTTP/1.1\r\nHost: localhost\r\n\r\n";
	const std::string Length = "Content-Length: " + std::to_string(Inner.size()) + "\r\n";
	const std::string Chunked = "Transfer-Encoding: chunked\r\n";
	const std::string Key = "x-api-key: right\r\n";
	const std::string TooLong(9000, 'a');
	for (const std::string& Head : { "POST /command HTTP/1.1\r\n" + Length, "GET /health HTTP/1.1\r\n" + Length,
			 "GET /status?request_id=x HTTP/1.1\r\n" + Key + Length, "DELETE /command HTTP/1.1\r\n" + Length,
			 "GET /health HTTP/1.1\r\n" + Chunked, "POST /command HTTP/1.1\r\n" + Length + Chunked,
			 "GET /" + TooLong + " HTTP/1.1\r\n" + Length, "GET /health HTTP/1.1\r\nA: " + TooLong + "\r\n" + Length,
			 "GET /health HTTP/9\r\n" + Length, "GET /health HTTP/1.1\r\nTransfer-Encoding : chunked\r\n" + Key })
	{
		const SlowClient Client(Service.GetPort(), SlowClient::Kind::Whole);
		const std::string Replies = Client.Ask(Head + "Host: localhost\r\n\r\n", Inner);
		EXPECT_EQ(Replies.find("HTTP/1.1"), 0u) << Head << Replies;
		EXPECT_EQ(Replies.find("HTTP/1.1", 1), std::string::npos) << Head << Replies;
		// Whoever reuses connections would lose the next request.
		EXPECT_NE(Replies.find("Connection: close\r\n"), std::string::npos) << Head << Replies;
		EXPECT_EQ(Replies.find("Keep-Alive"), std::string::npos) << Head << Replies;
	}
}

TEST(SlowClientTest, ABodyThatCameWithItsHeadIsNotCarriedOut)
{
	class Counter : public OfflineResponder
	{
	public:
		explicit Counter(std::atomic<int>& InCount)
			: Count(InCount)
		{
		}
		std::unique_ptr<Conversation> Begin(const Turn& FirstTurn) const override
		{
			++Count;
			return OfflineResponder::Begin(FirstTurn);
		}

	private:
		std::atomic<int>& Count;
	};
	std::atomic<int> NumBegun = 0;
	RunningServer Service(AnswerWith<Counter>(NumBegun), {});
	const std::string Message = R"({"message": "Hello.", "file_structure": {}})";
	const std::string Inner =
		"POST /command HTTP/1.1\r\nHost: localhost\r\nContent-Length: " + std::to_string(Message.size()) + "\r\n\r\n" +
		Message;
	const SlowClient Client(Service.GetPort(), SlowClient::Kind::Whole);
	Client.Ask("GET /health HTTP/1.1\r\nHost: localhost\r\nContent-Length: " + std::to_string(Inner.size()) +
				   "\r\n\r\n" + Inner,
		"");
	Service.Stop();
	EXPECT_EQ(NumBegun, 0);
}

TEST(SlowClientTest, SlowClientsDoNotKeepOthersWaiting)
{
	RunningServer Service(AnswerWith<OfflineResponder>(), {});
	for (const size_t Count : { PoolOfOld, 2 * ConnectionWatch::MostWaiting })
	{
		const SlowClients Slow = MakeSlowClients(Service.GetPort(), Count);
		const double Seconds = SecondsOf([&Service] {
			const auto Reply = Service.MakeClient()->Get("/status?request_id=x");
			ASSERT_TRUE(Reply) << httplib::to_string(Reply.error());
			EXPECT_EQ(Reply->status, 200);
		});
		EXPECT_LT(Seconds, 4.0) << Count << " slow clients";
	}
}

TEST(SlowClientTest, ARequestThatDoesNotArriveInTimeIsEnded)
{
	Options Settings;
	Settings.RequestSeconds = 1.0;
	RunningServer Service(AnswerWith<OfflineResponder>(), Settings);
	const SlowClients Slow = MakeSlowClients(Service.GetPort(), 4);
	EXPECT_FALSE(Slow.back()->IsEndedWithin(200)) << "too early";
	// A byte now and then is no reason to wait longer.
	for (int Index = 0; Index < 10; ++Index)
	{
		Slow.back()->Trickle();
		Slow.back()->IsEndedWithin(100);
	}
	for (const auto& Each : Slow)
	{
		EXPECT_TRUE(Each->IsEndedWithin(3000));
	}
}

TEST(SlowClientTest, StopsWithinSecondsWhateverClientsDo)
{
	const TestFolder Scripts;
	Scripts.Write("long.json", R"({"turns": [{"command": {"delay_seconds": 600}}]})");
	RunningServer Service(AnswerWith<ScriptResponder>(Scripts.Path), {});
	const SlowClients Slow = MakeSlowClients(Service.GetPort(), PoolOfOld);
	int Status = 0;
	std::thread Waiting([&Service, &Status] {
		const auto Client = Service.MakeClient();
		Client->set_read_timeout(60);
		const auto Reply = Client->Post("/command", R"({"message": "script long"})", "application/json");
		Status = Reply ? Reply->status : 0;
	});
	EXPECT_FALSE(Slow.back()->IsEndedWithin(500));
	EXPECT_LT(SecondsOf([&Service] { Service.Stop(); }), 5.0);
	Waiting.join();
	EXPECT_EQ(Status, 200) << "a delayed answer is sent before the end";
}
