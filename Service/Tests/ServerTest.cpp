#include "OfflineResponder.h"
#include "RunningServer.h"
#include "ScriptResponder.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <sys/stat.h>
#include <thread>

namespace
{
class ServerTest : public testing::Test
{
protected:
	void Start(std::unique_ptr<Backend> Chosen, const Options& Settings = {})
	{
		Https = std::make_unique<RunningServer>(std::move(Chosen), Settings);
		Client = Https->MakeClient();
	}

	Json Command(const std::string& ConversationId, const std::string& Message, bool bFirst = false)
	{
		Json Body = { { "message", Message } };
		if (bFirst)
		{
			Body["file_structure"] = Json::object();
		}
		const auto Reply =
			Client->Post("/v1/command", { { "conversation-id", ConversationId } }, Body.dump(), "application/json");
		EXPECT_TRUE(Reply) << httplib::to_string(Reply.error());
		return Json::parse(Reply->body);
	}

	Json Status(const Json& Reply)
	{
		const auto Answer = Client->Get("/v1/status?request_id=" + Reply["request_id"].get<std::string>());
		EXPECT_TRUE(Answer) << httplib::to_string(Answer.error());
		return Json::parse(Answer->body);
	}

	const TestFolder Folder;
	std::unique_ptr<RunningServer> Https;
	std::unique_ptr<httplib::SSLClient> Client;
};
}

TEST_F(ServerTest, HoldsSeveralConversationsApart)
{
	Start(AnswerWith<OfflineResponder>());
	const Json First = Command("one", "read A.h", true);
	const Json Second = Command("two", "read B.h", true);
	EXPECT_EQ(Status(First)["response"]["response"].back()["input"]["path"], "A.h");
	EXPECT_EQ(Status(Second)["response"]["response"].back()["input"]["path"], "B.h");
	EXPECT_EQ(Status({ { "request_id", "unknown" } })["status"], "FAILED");
}

TEST_F(ServerTest, ManyClientsAtOnce)
{
	Start(AnswerWith<OfflineResponder>());
	std::vector<std::thread> Threads;
	std::atomic<int> NumRight = 0;
	for (int Index = 0; Index < 8; ++Index)
	{
		Threads.emplace_back([this, Index, &NumRight] {
			const auto Own = Https->MakeClient();
			const std::string Path = "File" + std::to_string(Index) + ".h";
			const std::string Body =
				Json({ { "message", "read " + Path }, { "file_structure", Json::object() } }).dump();
			const auto Reply = Own->Post("/command", { { "conversation-id", Path } }, Body, "application/json");
			if (!Reply)
			{
				return;
			}
			const auto Done =
				Own->Get("/status?request_id=" + Json::parse(Reply->body)["request_id"].get<std::string>());
			NumRight += Done && Json::parse(Done->body)["response"]["response"].back()["input"]["path"] == Path;
		});
	}
	for (std::thread& Each : Threads)
	{
		Each.join();
	}
	EXPECT_EQ(NumRight, 8);
}

TEST_F(ServerTest, ChecksTheKeyAndTheSizeOfTheBody)
{
	Options Settings;
	Settings.ApiKey = "secret";
	Settings.MaxBodyBytes = 100;
	Start(AnswerWith<OfflineResponder>(), Settings);
	EXPECT_EQ(Client->Post("/command", "{}", "application/json")->status, 401);
	EXPECT_EQ(Client->Get("/status?request_id=x", { { "x-api-key", "secre" } })->status, 401);
	EXPECT_EQ(Client->Post("/command", { { "x-api-key", "secret" } }, "{}", "application/json")->status, 200);
	EXPECT_EQ(
		Client->Post("/command", { { "x-api-key", "secret" } }, std::string(1000, ' '), "application/json")->status,
		413);
	EXPECT_EQ(Client->Post("/command", { { "x-api-key", "secret" } }, "no json", "application/json")->status, 400);
}

TEST_F(ServerTest, ABodyWhoseSizeIsNotSaidBeforeIsRefused)
{
	// Neither is held against the limit while it is read: a few bytes may unpack to all the memory there is.
	Start(AnswerWith<OfflineResponder>());
	EXPECT_EQ(Client->Post("/command", { { "Content-Encoding", "gzip" } }, "{}", "application/json")->status, 415);
	const auto WriteChunk = [](size_t, httplib::DataSink& Sink) {
		Sink.write("{}", 2);
		Sink.done();
		return true;
	};
	EXPECT_EQ(
		Client->Post("/command", httplib::ContentProviderWithoutLength(WriteChunk), "application/json")->status, 411);
	EXPECT_EQ(Client->Post("/command", "{}", "application/json")->status, 200);
}

TEST_F(ServerTest, ABodyThatIsNotUtf8IsRefused)
{
	Start(AnswerWith<OfflineResponder>());
	const auto CodeOf = [this](const std::string& Body) {
		const auto Reply = Client->Post("/command", Body, "application/json");
		return Reply ? Reply->status : 0;
	};
	// Also where the message is not JSON: clients may put it into their template unescaped.
	for (const char* Bytes : { "\xff", "\xc3", "\xc0\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xe2\x82" })
	{
		EXPECT_EQ(CodeOf(std::string("{\"message\": \"") + Bytes + "\"}"), 400);
		EXPECT_EQ(CodeOf(std::string("{\"message\": \"say \"") + Bytes + "\" now\"}"), 400);
	}
	EXPECT_EQ(CodeOf("{\"message\": \"\xc3\xa9 \xe2\x82\xac \xed\x9f\xbf \xf0\x9f\x98\x80\"}"), 200);
}

TEST_F(ServerTest, PlaysDroppedConnectionsAndOddCodes)
{
	Folder.Write("faults.json", R"({"turns": [
		{"command": {"drop": true}},
		{"command": {"code": 418, "raw": ""}},
		{"status": [{"drop": true}, {"code": 503, "raw": "busy"}, {"status": "FAILED", "error": "no"}]}
	]})");
	Start(AnswerWith<ScriptResponder>(Folder.Path));
	const std::string Body = R"({"message": "script faults"})";
	EXPECT_FALSE(Client->Post("/command", Body, "application/json")) << "closed in the middle";
	EXPECT_EQ(Client->Post("/command", Body, "application/json")->status, 418);
	const Json Reply = Json::parse(Client->Post("/command", Body, "application/json")->body);
	const std::string StatusPath = "/status?request_id=" + Reply["request_id"].get<std::string>();
	EXPECT_FALSE(Client->Get(StatusPath));
	EXPECT_EQ(Client->Get(StatusPath)->status, 503);
	EXPECT_EQ(Status(Reply)["error"], "no");
	EXPECT_EQ(Status(Reply)["error"], "no") << "the last one is repeated";
}

TEST_F(ServerTest, KeepsItsAuthorityAndItsKeysToItself)
{
	Start(AnswerWith<OfflineResponder>());
	const std::string State = Https->GetStateFolder();
	std::ifstream File(State + "/authority.pem");
	const std::string Before((std::istreambuf_iterator<char>(File)), {});
	PrepareCertificates(State, { "other.example" });
	std::ifstream Again(State + "/authority.pem");
	EXPECT_EQ(Before, std::string((std::istreambuf_iterator<char>(Again)), {}));
	for (const char* Key : { "/authority-key.pem", "/server-key.pem" })
	{
		struct stat Info
		{
		};
		ASSERT_EQ(stat((State + Key).c_str(), &Info), 0);
		EXPECT_EQ(Info.st_mode & 0777, 0600u);
	}
	httplib::SSLClient Untrusting("localhost", Https->GetPort());
	Untrusting.enable_server_certificate_verification(true);
	EXPECT_FALSE(Untrusting.Get("/status")) << "a client that does not know the authority refuses";
}
