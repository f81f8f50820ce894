#include "ModelBackend.h"
#include "ModelTalk.h"
#include "OfflineResponder.h"
#include "RateLimit.h"
#include "RunningServer.h"

#include <gtest/gtest.h>

namespace
{
/** A service for a team: named keys, an operator. */
class NamedKeysTest : public testing::Test
{
protected:
	void Start(const std::vector<ScriptedReply>& Replies, int64_t TurnsPerMinute = 0)
	{
		Talk = std::make_unique<ModelTalk>(ModelFormat::Messages, Replies);
		ModelConfig Config = Talk->Context.Config;
		Config.Prices.Output = 1e6;
		Config.TurnsPerMinute = TurnsPerMinute;
		Store = std::make_shared<ModelStore>(SqlDatabase::OpenSqlite(Folder.Path + "/conversations.sqlite"));
		KeyRing Keys(Store->GetDatabase());
		Anna = Keys.Add({ "anna", 3 });
		Bert = Keys.Add({ "bert", 0 });
		Https = std::make_unique<RunningServer>(std::make_unique<ModelBackend>(Config, Store), Options(), Store.get());
		Client = Https->MakeClient();
	}

	httplib::Result Command(const std::string& Key, const std::string& Conversation, bool bFirst = true)
	{
		Json Body = { { "message", "Hi" } };
		if (bFirst)
		{
			Body["file_structure"] = Json::object();
		}
		return Client->Post(
			"/command", { { "x-api-key", Key }, { "conversation-id", Conversation } }, Body.dump(), "application/json");
	}

	Json Poll(const std::string& Key, const Json& Commanded)
	{
		const std::string Path = "/status?request_id=" + Commanded["request_id"].get<std::string>();
		Json Reply = { { "status", "PROCESSING" } };
		while (Reply["status"] == "PROCESSING")
		{
			Reply = Json::parse(Client->Get(Path, { { "x-api-key", Key } })->body);
		}
		return Reply;
	}

	const TestFolder Folder;
	std::unique_ptr<ModelTalk> Talk;
	std::shared_ptr<ModelStore> Store;
	std::unique_ptr<RunningServer> Https;
	std::unique_ptr<httplib::SSLClient> Client;
	std::string Anna;
	std::string Bert;
};

ScriptedReply SaysForTokens(int Tokens)
{
	return Says(
		ModelFormat::Messages, { { "text", "Hello." }, { "usage", { { "input", 6000 }, { "output", Tokens } } } });
}
}

TEST_F(NamedKeysTest, EachKeyHasItsConversationsAndItsBudget)
{
	Start({ SaysForTokens(2), SaysForTokens(2), SaysForTokens(2) });
	EXPECT_EQ(Command("", "a")->status, 401);
	EXPECT_EQ(Command("kestrel-guess", "a")->status, 401);
	EXPECT_EQ(Client->Post("/health", "a body to keep", "text/plain")->status, 401);
	const Json First = Json::parse(Command(Anna, "a")->body);
	EXPECT_EQ(ModelTalk::TextOf(Poll(Anna, First)), "Hello.");
	EXPECT_EQ(Poll(Bert, First)["error"], "There is no such request.");
	EXPECT_EQ(Command(Bert, "a", false)->status, 409) << "a conversation of another key";

	EXPECT_EQ(ModelTalk::TextOf(Poll(Anna, Json::parse(Command(Anna, "a", false)->body))), "Hello.");
	const Json Over = Poll(Anna, Json::parse(Command(Anna, "a", false)->body));
	EXPECT_EQ(Over["status"], "FAILED");
	EXPECT_NE(Over["error"].get<std::string>().find("budget of 3 per month of the key anna"), std::string::npos);
	EXPECT_EQ(ModelTalk::TextOf(Poll(Bert, Json::parse(Command(Bert, "b")->body))), "Hello.");
	EXPECT_EQ(Talk->Server.CountRequests(), 3u);
}

TEST_F(NamedKeysTest, TooManyTurnsAreRefusedForAWhile)
{
	Start({ SaysForTokens(1), SaysForTokens(1), SaysForTokens(1) }, 2);
	Poll(Anna, Json::parse(Command(Anna, "a")->body));
	Poll(Anna, Json::parse(Command(Anna, "a", false)->body));
	const httplib::Result Refused = Command(Anna, "a", false);
	EXPECT_EQ(Refused->status, 429);
	EXPECT_GT(std::stoi(Refused->get_header_value("Retry-After")), 0);
	EXPECT_EQ(Command(Bert, "b")->status, 200) << "others are not kept waiting";
}

TEST(RateLimitTest, AMinutesWorthAtOnceAndThenEvenly)
{
	RateLimit Limit(60);
	auto Now = RateLimit::Clock::now();
	for (int Index = 0; Index < 60; ++Index)
	{
		EXPECT_EQ(Limit.Take("a", Now), 0);
	}
	EXPECT_EQ(Limit.Take("a", Now), 1);
	EXPECT_EQ(Limit.Take("b", Now), 0);
	Now += std::chrono::seconds(2);
	EXPECT_EQ(Limit.Take("a", Now) + Limit.Take("a", Now), 0);
	EXPECT_EQ(Limit.Take("a", Now), 1);
	RateLimit None(0);
	EXPECT_EQ(None.Take("a", Now), 0);
}

TEST(AccessTest, OtherMachinesAreOnlyServedWithKeys)
{
	const TestFolder Folder;
	Options Settings;
	Settings.Listen = "0.0.0.0";
	EXPECT_THROW(RunningServer(AnswerWith<OfflineResponder>(), Settings), std::runtime_error);
	ModelStore Store(SqlDatabase::OpenSqlite(Folder.Path + "/conversations.sqlite"));
	EXPECT_THROW(RunningServer(AnswerWith<OfflineResponder>(), Settings, &Store), std::runtime_error);
	const std::string Key = KeyRing(Store.GetDatabase()).Add({ "anna", 0 });
	{
		RunningServer Https(AnswerWith<OfflineResponder>(), Settings, &Store);
		const std::string Path = "/status?request_id=0";
		EXPECT_EQ(Https.MakeClient()->Get(Path)->status, 401);
		EXPECT_EQ(Https.MakeClient()->Get(Path, { { "x-api-key", Key } })->status, 200);
	}
	Settings.ApiKey = "one for all";
	RunningServer Https(AnswerWith<OfflineResponder>(), Settings);
	EXPECT_EQ(Https.MakeClient()->Get("/status?request_id=0")->status, 401);
}
