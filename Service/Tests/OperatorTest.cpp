#include "ModelBackend.h"
#include "ModelTalk.h"
#include "OfflineResponder.h"
#include "RunningServer.h"

#include <gtest/gtest.h>

namespace
{
const std::string OperatorKey = "canary-operator-5309";
const httplib::Headers Bearer = { { "Authorization", "Bearer " + OperatorKey } };

Options WithOperator()
{
	Options Settings;
	Settings.OperatorKey = OperatorKey;
	return Settings;
}

Json Get(const RunningServer& Https, const std::string& Path)
{
	const auto Reply = Https.MakeClient()->Get(Path, Bearer);
	EXPECT_EQ(Reply->status, 200) << Path << ": " << Reply->body;
	return Json::parse(Reply->body);
}

void BeginWaitingTurns(ModelStore& Store, int Count)
{
	for (int Index = 0; Index < Count; ++Index)
	{
		Turn Waiting;
		Waiting.ConversationId = "waiting" + std::to_string(Index);
		Waiting.RequestId = Waiting.ConversationId;
		Waiting.Message = "Somebody waits.";
		Waiting.FileStructure = Json::object();
		Store.BeginTurn(Waiting);
	}
}

/** The rows of the first two pages of conversations by their id. */
std::map<std::string, Json> ReadTwoPages(const RunningServer& Https)
{
	std::map<std::string, Json> Rows;
	Json Page = Get(Https, "/operator/conversations");
	EXPECT_EQ(Page["more"], true);
	for (int NumPages = 0; NumPages < 2; ++NumPages)
	{
		for (const Json& Row : Page["conversations"])
		{
			EXPECT_TRUE(Rows.try_emplace(Row["id"], Row).second) << "twice: " << Row;
		}
		const Json Last = Page["conversations"].back();
		Page = Get(Https,
			"/operator/conversations?before=" + Last["updated"].dump() + "&before_id=" + Last["id"].get<std::string>());
	}
	return Rows;
}
}

TEST(OperatorTest, ShowsConversationsToTheOperatorOnly)
{
	const TestFolder Folder;
	const ModelFormat Format = ModelFormat::Messages;
	const Json Call = MakeCall("c1", "read_file", { { "path", "A.h" } });
	ModelTalk Talk(Format, { Says(Format, { { "text", "<b>I</b> read." }, { "calls", Json::array({ Call }) },
											  { "usage", { { "input", 6000 }, { "output", 5 } } } }) });
	const auto Store = std::make_shared<ModelStore>(SqlDatabase::OpenSqlite(Folder.Path + "/conversations.sqlite"));
	RunningServer Https(std::make_unique<ModelBackend>(Talk.Context.Config, Store), WithOperator(), Store.get());
	const auto Client = Https.MakeClient();
	const auto Send = [&Client](const std::string& Id, const Json& Body) {
		const auto Reply = Client->Post("/command", { { "conversation-id", Id } }, Body.dump(), "application/json");
		const std::string Path = "/status?request_id=" + Json::parse(Reply->body)["request_id"].get<std::string>();
		while (Json::parse(Client->Get(Path)->body)["status"] == "PROCESSING")
		{
			std::this_thread::yield();
		}
	};
	Send("talk", { { "message", "Read it." }, { "file_structure", Json::object() } });
	Send("failing", { { "message", "Hi" }, { "file_structure", Json::object() } });
	BeginWaitingTurns(*Store, 60);

	const Json Overview = Get(Https, "/operator/overview");
	EXPECT_EQ(Overview["today"]["requests"], 2);
	EXPECT_EQ(Overview["today"]["running"], 60);
	std::map<std::string, Json> Rows = ReadTwoPages(Https);
	EXPECT_EQ(Rows.size(), 62u);
	EXPECT_EQ(Rows["talk"]["state"], "answered");
	EXPECT_GT(Rows["talk"]["tokens"], 0);
	EXPECT_EQ(Rows["failing"]["state"], "failed");
	EXPECT_NE(Rows["failing"]["error"], "");
	EXPECT_EQ(Rows["waiting7"]["state"], "working");
	const std::string Said = Get(Https, "/operator/conversation?id=talk").dump();
	EXPECT_NE(Said.find("Read it."), std::string::npos) << Said;
	EXPECT_NE(Said.find("<b>I</b> read."), std::string::npos) << Said;
	EXPECT_NE(Said.find("Tool call: read_file"), std::string::npos) << Said;
	EXPECT_NE(Get(Https, "/operator/conversation?id=waiting7").dump().find("Somebody waits."), std::string::npos);

	for (const char* Path :
		{ "/operator/overview", "/operator/conversations", "/operator/conversation?id=talk", "/metrics" })
	{
		const auto Refused = Client->Get(Path);
		EXPECT_EQ(Refused->status, 401) << Path;
		EXPECT_EQ(Refused->body.find("Read it."), std::string::npos);
		EXPECT_EQ(Client->Get(Path, { { "Authorization", "Bearer wrong" } })->status, 401) << Path;
	}
	EXPECT_EQ(Client->Get("/operator/conversation?id=none", Bearer)->status, 404);
	for (const char* Path : { "/", "/operator.css", "/operator.js" })
	{
		const auto File = Client->Get(Path);
		EXPECT_EQ(File->status, 200) << Path;
		EXPECT_NE(File->get_header_value("Content-Security-Policy").find("default-src 'none'"), std::string::npos);
		EXPECT_EQ(File->body.find("http"), std::string::npos) << Path << " asks for something elsewhere";
	}
}

TEST(OperatorTest, CountsForPrometheusAndTellsWhetherItWorks)
{
	RunningServer Https(AnswerWith<OfflineResponder>(), WithOperator());
	const auto Client = Https.MakeClient();
	EXPECT_EQ(Client->Get("/health")->body, R"({"status":"ok"})");
	EXPECT_EQ(Client->Get("/nothing")->status, 404);
	const auto Metrics = Client->Get("/metrics", Bearer);
	EXPECT_EQ(Metrics->get_header_value("Content-Type"), "text/plain; version=0.0.4");
	EXPECT_NE(Metrics->body.find("# TYPE kestrel_http_requests_total counter\n"), std::string::npos);
	EXPECT_NE(Metrics->body.find("kestrel_http_requests_total{code=\"404\"} "), std::string::npos) << Metrics->body;
	EXPECT_EQ(Client->Get("/")->status, 404) << "nothing is stored that it could show";

	RunningServer Without(AnswerWith<OfflineResponder>(), Options());
	EXPECT_EQ(Without.MakeClient()->Get("/metrics")->status, 404);
	EXPECT_EQ(Without.MakeClient()->Get("/metrics", { { "Authorization", "Bearer " } })->status, 404);
}

TEST(OperatorTest, AFailingDatabaseIsUnhealthy)
{
	const TestFolder Folder;
	ModelTalk Talk(ModelFormat::Messages);
	const std::string Path = Folder.Path + "/conversations.sqlite";
	const auto Store = std::make_shared<ModelStore>(SqlDatabase::OpenSqlite(Path));
	RunningServer Https(std::make_unique<ModelBackend>(Talk.Context.Config, Store), Options(), Store.get());
	EXPECT_EQ(Https.MakeClient()->Get("/health")->status, 200);
	Store->GetDatabase().Run("DROP TABLE conversations");
	const auto Reply = Https.MakeClient()->Get("/health");
	EXPECT_EQ(Reply->status, 503);
	EXPECT_EQ(Reply->body, R"({"status":"failing"})");
}
