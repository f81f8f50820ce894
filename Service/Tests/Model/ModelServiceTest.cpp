#include "CheckConfig.h"
#include "ModelBackend.h"
#include "ModelTalk.h"
#include "OfflineResponder.h"
#include "RunningServer.h"
#include "TestDatabase.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace
{
/** The service with the responder 'model' in front of a scripted model server. */
class ModelServiceTest : public testing::TestWithParam<TestDatabase::Kind>
{
protected:
	void Start(const std::vector<ScriptedReply>& Replies, double UnpolledSeconds = 60)
	{
		Talk = std::make_unique<ModelTalk>(ModelFormat::Messages, Replies);
		ModelConfig Config = Talk->Context.Config;
		Config.Timeouts.FirstByte = 60;
		Config.Timeouts.BetweenBytes = 60;
		Config.Timeouts.Unpolled = UnpolledSeconds;
		Https = MakeService(Config);
		Client = Https->MakeClient();
	}

	std::unique_ptr<RunningServer> MakeService(const ModelConfig& Config) const
	{
		return std::make_unique<RunningServer>(
			std::make_unique<ModelBackend>(Config, std::make_unique<ModelStore>(Database.Open(), 1.0)), Options());
	}

	std::string Command(const std::string& Conversation, const Json& Body)
	{
		const auto Reply =
			Client->Post("/command", { { "conversation-id", Conversation } }, Body.dump(), "application/json");
		EXPECT_TRUE(Reply) << httplib::to_string(Reply.error());
		return Json::parse(Reply->body)["request_id"];
	}

	Json Poll(const std::string& RequestId)
	{
		return Json::parse(Client->Get("/status?request_id=" + RequestId)->body);
	}

	/** Polls until a reply is as it should be. */
	Json PollUntil(const std::string& RequestId, const std::function<bool(const Json&)>& IsRight)
	{
		const auto End = std::chrono::steady_clock::now() + std::chrono::seconds(20);
		Json Reply = Poll(RequestId);
		while (!IsRight(Reply) && std::chrono::steady_clock::now() < End)
		{
			std::this_thread::yield();
			Reply = Poll(RequestId);
		}
		EXPECT_TRUE(IsRight(Reply)) << Reply.dump();
		return Reply;
	}

	static bool IsOver(const Json& Reply) { return Reply["status"] != "PROCESSING"; }

	/** The service ends, without a chance to do anything for its turns, and a new one takes over. */
	void Restart()
	{
		const ModelConfig Config = Talk->Context.Config;
		Client.reset();
		Https.reset();
		Https = MakeService(Config);
		Client = Https->MakeClient();
	}

	const TestDatabase Database = TestDatabase(GetParam());
	std::unique_ptr<ModelTalk> Talk;
	std::unique_ptr<RunningServer> Https;
	std::unique_ptr<httplib::SSLClient> Client;
};

/** A stream that stops in the middle of its text. */
ScriptedReply StopsInTheMiddle()
{
	ScriptedReply Reply = SaysText(ModelFormat::Messages, "Half an answer");
	Reply.Body.resize(Reply.Body.find("event: content_block_stop"));
	Reply.End = ScriptedReply::Ending::Silence;
	return Reply;
}

INSTANTIATE_TEST_SUITE_P(EachDatabase, ModelServiceTest,
	testing::Values(TestDatabase::Kind::Sqlite, TestDatabase::Kind::Postgres),
	[](const auto& Info) { return NameOf(Info.param); });

const Json FirstTurn = { { "message", "Hi" }, { "file_structure", Json::object() } };
}

TEST_P(ModelServiceTest, ShowsTheAnswerWhileItComes)
{
	Start({ StopsInTheMiddle(), SaysText(ModelFormat::Messages, "Second.") });
	const std::string First = Command("a", FirstTurn);
	const Json Reply = PollUntil(First, [](const Json& Each) { return Each.value("partial", "") != ""; });
	EXPECT_EQ(Reply["status"], "PROCESSING");
	EXPECT_EQ(Reply["partial"], "Half an answer");
	EXPECT_EQ(Reply["attempt"], 1);
	EXPECT_TRUE(Reply["tokens"].is_number_integer() && Reply["seconds"].is_number_integer());

	// A further turn takes the place of the one that hangs.
	const std::string Second = Command("a", { { "message", "Still there?" } });
	EXPECT_EQ(ModelTalk::TextOf(PollUntil(Second, IsOver)), "Second.");
	EXPECT_EQ(Talk->Server.GetProblems(), "");
}

TEST_P(ModelServiceTest, GivesUpATurnThatNobodyAsksFor)
{
	Start({ StopsInTheMiddle(), SaysText(ModelFormat::Messages, "Other.") }, 0.1);
	const std::string Left = Command("left", FirstTurn);
	EXPECT_TRUE(Talk->Server.WaitForHangUp());
	EXPECT_EQ(PollUntil(Left, IsOver)["status"], "FAILED");
	EXPECT_EQ(Talk->Server.CountRequests(), 1u);
}

TEST_P(ModelServiceTest, StopsWhileManyTurnsHang)
{
	constexpr int NumHanging = 20;
	Start(std::vector<ScriptedReply>(NumHanging, StopsInTheMiddle()));
	for (int Index = 0; Index < NumHanging; ++Index)
	{
		PollUntil(Command("a" + std::to_string(Index), FirstTurn),
			[](const Json& Each) { return Each.value("partial", "") != ""; });
	}
	const auto Before = std::chrono::steady_clock::now();
	Https.reset();
	EXPECT_LT(std::chrono::steady_clock::now() - Before, std::chrono::seconds(5));
}

TEST_P(ModelServiceTest, GoesOnAfterARestart)
{
	const ModelFormat Format = ModelFormat::Messages;
	const Json Call = MakeCall("c1", "read_file", { { "path", "A.h" } });
	Start({ Says(Format, { { "text", "I read." }, { "calls", Json::array({ Call }) } }), StopsInTheMiddle(),
		SaysText(Format, "Read."), SaysText(Format, "Yes.") });
	const std::string First = Command("a", FirstTurn);
	const Json Answered = PollUntil(First, IsOver);
	Restart();
	EXPECT_EQ(Poll(First).dump(), Answered.dump()) << "an earlier poll is answered as before";

	const std::string Second = Command("a", { { "tool_results", Json::array({ MakeToolResult("c1", "text") }) } });
	PollUntil(Second, [](const Json& Each) { return Each.value("partial", "") != ""; });
	Restart();
	EXPECT_EQ(ModelTalk::TextOf(PollUntil(Second, IsOver)), "Read.") << "the turn was worked out again";

	Restart();
	EXPECT_EQ(ModelTalk::TextOf(PollUntil(Command("a", { { "message", "Sure?" } }), IsOver)), "Yes.");
	EXPECT_EQ(Talk->Server.GetRequests().back()["messages"].size(), 5u) << "with all that was said before";
	EXPECT_EQ(Talk->Server.GetProblems(), "");
	EXPECT_EQ(Poll("unknown")["error"], "There is no such request.");
}

TEST_P(ModelServiceTest, WhatWasSentWithAReplacedTurnReachesTheModel)
{
	const ModelFormat Format = ModelFormat::Messages;
	const Json Call = MakeCall("c1", "read_file", { { "path", "A.h" } });
	Start({ Says(Format, { { "calls", Json::array({ Call }) } }), StopsInTheMiddle(), StopsInTheMiddle(),
		SaysText(Format, "All read.") });
	PollUntil(Command("a", FirstTurn), IsOver);
	const auto HasText = [](const Json& Each) { return Each.value("partial", "") != ""; };
	PollUntil(Command("a", { { "tool_results", Json::array({ MakeToolResult("c1", "what A.h says") }) } }), HasText);
	PollUntil(Command("a", { { "message", "And then?" } }), HasText);
	EXPECT_EQ(ModelTalk::TextOf(PollUntil(Command("a", { { "message", "Hello?" } }), IsOver)), "All read.");
	const std::string Last = Talk->Server.GetRequests().back()["messages"].back().dump();
	for (const char* Expected : { "what A.h says", "And then?", "Hello?" })
	{
		EXPECT_NE(Last.find(Expected), std::string::npos) << Expected << " is missing in " << Last;
	}
	EXPECT_EQ(Talk->Server.GetProblems(), "");
}

TEST(SharedServiceTest, AConversationGoesOnInWhicheverProcessIsAsked)
{
	const TestDatabase Database(TestDatabase::Kind::Postgres);
	const ModelFormat Format = ModelFormat::Messages;
	ModelTalk Talk(
		Format, { SaysText(Format, "One."), StopsInTheMiddle(), SaysText(Format, "Two."), SaysText(Format, "Three.") });
	ModelConfig Config = Talk.Context.Config;
	Config.Timeouts.FirstByte = Config.Timeouts.BetweenBytes = 60;
	const auto Open = [&] {
		return std::make_unique<ModelBackend>(Config, std::make_unique<ModelStore>(Database.Open(), 0.5));
	};
	const auto PollUntil = [](Backend& Asked, const std::string& Request, const auto& IsRight) {
		const auto End = std::chrono::steady_clock::now() + std::chrono::seconds(20);
		Json Reply;
		do
		{
			Reply = Json::parse(Asked.Status(Request, "").Body);
		}
		while (!IsRight(Reply) && std::chrono::steady_clock::now() < End);
		return Reply;
	};
	const auto IsOver = [](const Json& Reply) { return Reply["status"] != "PROCESSING"; };
	const auto Command = [](Backend& Asked, const std::string& Message, const Json& Tree = Json()) {
		Turn UserTurn;
		UserTurn.ConversationId = "one";
		UserTurn.Message = Message;
		UserTurn.FileStructure = Tree;
		return Json::parse(Asked.Command(UserTurn).Body)["request_id"].get<std::string>();
	};
	auto Here = Open();
	const auto There = Open();
	EXPECT_EQ(ModelTalk::TextOf(PollUntil(*There, Command(*Here, "A", Json::object()), IsOver)), "One.");

	// Only the other process is asked: it sees the text that comes here, and that is poll enough.
	const std::string Second = Command(*Here, "B");
	const Json Partial = PollUntil(*There, Second, [](const Json& Each) { return Each.value("partial", "") != ""; });
	EXPECT_EQ(Partial["partial"], "Half an answer");
	EXPECT_EQ(Talk.Server.CountRequests(), 2u);
	Here.reset();
	EXPECT_EQ(ModelTalk::TextOf(PollUntil(*There, Second, IsOver)), "Two.") << "taken over from one that has ended";

	Here = Open();
	EXPECT_EQ(ModelTalk::TextOf(PollUntil(*There, Command(*Here, "C"), IsOver)), "Three.");
	EXPECT_EQ(Talk.Server.GetRequests().back()["messages"].size(), 5u);
	EXPECT_EQ(Talk.Server.GetProblems(), "");
}

TEST(ModelTlsTest, OnlyATrustedServerGetsTheKey)
{
	RunningServer Https(AnswerWith<OfflineResponder>(), {});
	ModelTalk Talk(ModelFormat::Messages);
	Talk.Context.Config.Server.BaseUrl = "https://localhost:" + std::to_string(Https.GetPort()) + "/v1";
	EXPECT_NE(ModelTalk::TextOf(Talk.Send("Hi")).find("is not trusted"), std::string::npos);
	Talk.Context.Config.Server.AuthorityFile = Https.GetStateFolder() + "/authority.pem";
	EXPECT_NE(ModelTalk::TextOf(Talk.Send("Hi")).find("knows no such address"), std::string::npos)
		<< "trusted, but no model";
}

TEST(CheckConfigTest, SaysWhatWorks)
{
	const auto Check = [](const std::vector<ScriptedReply>& Replies, bool bExpected) {
		ScriptedModelServer Server(ModelFormat::ChatCompletions, Replies);
		const TestFolder Folder;
		Folder.Write("key", ModelTalk::Key);
		Folder.Write("model.toml", "[server]\nformat = \"chat-completions\"\nmodel = \"m\"\nbase_url = \"" +
									   Server.GetUrl() + "\"\nkey_file = \"" + Folder.Path +
									   "/key\"\n[retries]\nattempts = 1\n");
		std::ostringstream Out;
		EXPECT_EQ(CheckConfig(Folder.Path + "/model.toml", Out), bExpected);
		EXPECT_EQ(Out.str().find(ModelTalk::Key), std::string::npos);
		EXPECT_EQ(Server.GetProblems(), "");
		return Out.str();
	};
	const ModelFormat Chat = ModelFormat::ChatCompletions;
	const ScriptedReply Word = Says(Chat, { { "text", "ready" }, { "usage", { { "input", 5 }, { "output", 1 } } } });
	const ScriptedReply Call =
		Says(Chat, { { "calls", Json::array({ MakeCall("c", "report_color", { { "color", "red" } }) }) } });
	EXPECT_NE(
		Check({ Word, Call }, true).find("A word: yes\nToken counts: yes\nA tool call: yes\n"), std::string::npos);
	EXPECT_NE(Check({ Word, SaysText(Chat, "I cannot.") }, false).find("A tool call: no"), std::string::npos);
	EXPECT_NE(Check({ ScriptedReply{ "HTTP/1.1 401 No\r\n\r\n", "", ScriptedReply::Ending::Close, false } }, false)
				  .find("rejected the key"),
		std::string::npos);
}
