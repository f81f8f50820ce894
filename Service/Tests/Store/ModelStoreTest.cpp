#include "ModelStore.h"
#include "Migrations.h"
#include "ModelTalk.h"
#include "MutateText.h"
#include "OperatorViews.h"
#include "TestDatabase.h"

#include <atomic>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>

namespace
{
constexpr double ShortLease = 0.2;

Turn MakeTurn(const std::string& Conversation, const std::string& Request, const std::string& Message)
{
	Turn Result;
	Result.ConversationId = Conversation;
	Result.RequestId = Request;
	Result.Message = Message;
	Result.EngineVersion = "5.4";
	return Result;
}

Turn MakeFirstTurn(const std::string& Conversation, const std::string& Request, const std::string& Message)
{
	Turn Result = MakeTurn(Conversation, Request, Message);
	Result.FileStructure = Json::object();
	return Result;
}

/** What every kind of database must do alike. Each store is what a process of its own would have. */
class ModelStoreTest : public testing::TestWithParam<TestDatabase::Kind>
{
protected:
	std::unique_ptr<ModelStore> Open(double LeaseSeconds = ModelStore::UsualLeaseSeconds) const
	{
		return std::make_unique<ModelStore>(Database.Open(), LeaseSeconds);
	}

	/** Asks again and again until nobody holds the turn's lease any more. */
	static void WaitUntilAbandoned(ModelStore& Store, const std::string& Request)
	{
		const auto End = std::chrono::steady_clock::now() + std::chrono::seconds(20);
		while (!Store.Poll(Request, "")->bAbandoned)
		{
			ASSERT_LT(std::chrono::steady_clock::now(), End);
			std::this_thread::yield();
		}
	}

	const TestDatabase Database = TestDatabase(GetParam());
	const Json Done = { { "status", "COMPLETED" } };
};

INSTANTIATE_TEST_SUITE_P(EachDatabase, ModelStoreTest,
	testing::Values(TestDatabase::Kind::Sqlite, TestDatabase::Kind::Postgres),
	[](const auto& Info) { return NameOf(Info.param); });
}

TEST_P(ModelStoreTest, KeepsAConversationAndTheTurnsAfterItsState)
{
	const Json State = { { "a", 1 } };
	{
		const auto Store = Open();
		EXPECT_EQ(Store->BeginTurn(MakeFirstTurn("one", "r1", "\"Hi\" €")), "");
		EXPECT_TRUE(Store->FinishTurn("r1", State, Done));
		EXPECT_EQ(Store->BeginTurn(MakeTurn("one", "r2", std::string("NUL\0", 4))), "r1") << "its state is the latest";
		EXPECT_FALSE(Store->FinishTurn("r1", { { "late", true } }, { { "status", "FAILED" } }));
		EXPECT_EQ(Store->BeginTurn(MakeTurn("one", "r3", "More")), "") << "r2 has left no state";
		Store->AddUsage("", 7, { 1, 100, 0.5, 0.25 });
		Store->AddUsage("anna", 7, { 1, 100, 0.5, 0.25 });
	}
	const auto Store = Open();
	EXPECT_FALSE(Store->Load("r2")) << "replaced";
	const std::optional<StoredConversation> Found = Store->Load("r3");
	ASSERT_TRUE(Found);
	EXPECT_EQ(Found->Id, "one");
	EXPECT_EQ(Found->State, State) << "a turn that was replaced changes nothing";
	ASSERT_EQ(Found->Turns.size(), 2u) << "what was sent with the replaced turn is not lost";
	EXPECT_EQ(Found->Turns[0].Message, std::string("NUL\0", 4));
	EXPECT_EQ(Found->Turns[1].Message + Found->Turns[1].EngineVersion, "More5.4");
	EXPECT_FALSE(Store->Poll("r1", ""));
	EXPECT_TRUE(Store->Poll("r3", "")->Reply.is_null());
	EXPECT_EQ(Store->GetUsage(7).Tokens, 200);
	EXPECT_EQ(Store->GetUsage(7).Cost, 0.5);
	EXPECT_EQ(Store->GetUsage(8).Tokens, 0);
	Store->BeginTurn(MakeFirstTurn("one", "r4", "Anew"));
	EXPECT_TRUE(Store->Load("r4")->State.is_null());
	EXPECT_EQ(Store->Load("r4")->Turns.size(), 1u);
}

TEST_P(ModelStoreTest, AKeyReachesNoConversationOfAnother)
{
	const auto Store = Open();
	Turn Annas = MakeFirstTurn("one", "r1", "Hi");
	Annas.KeyName = "anna";
	Store->BeginTurn(Annas);
	EXPECT_FALSE(Store->Poll("r1", "bert"));
	EXPECT_TRUE(Store->Poll("r1", "anna"));
	for (Turn Other : { MakeFirstTurn("one", "r2", "Mine"), MakeTurn("one", "r2", "Mine") })
	{
		Other.KeyName = "bert";
		EXPECT_THROW(Store->BeginTurn(Other), ForeignConversation);
	}
	EXPECT_EQ(Store->Load("r1")->Turns[0].Message, "Hi");
}

TEST_P(ModelStoreTest, OnlyTheHolderOfTheLeaseEndsATurn)
{
	const auto First = Open(ShortLease);
	First->BeginTurn(MakeFirstTurn("one", "r1", "Hi"));
	const auto Second = Open();
	if (GetParam() == TestDatabase::Kind::Postgres)
	{
		EXPECT_EQ(Open()->Claim("r1"), "") << "its worker has just begun";
		EXPECT_FALSE(Second->FinishTurn("r1", Json::object(), Done)) << "without a lease";
	}
	EXPECT_GE(First->Renew("r1", { { "status", "PROCESSING" }, { "partial", "Ha" } }).value_or(-1), 0);
	EXPECT_EQ(Second->Poll("r1", "")->Progress["partial"], "Ha");
	WaitUntilAbandoned(*Second, "r1");
	EXPECT_EQ(Second->Claim("r1"), "one");
	EXPECT_FALSE(First->Renew("r1", Json())) << "lost";
	EXPECT_FALSE(First->FinishTurn("r1", Json::object(), Done)) << "it ran on without knowing";
	EXPECT_TRUE(Second->FinishTurn("r1", Json::object(), Done));
	EXPECT_FALSE(Second->FinishTurn("r1", Json::object(), { { "status", "FAILED" } })) << "once is all";
	EXPECT_EQ(First->Poll("r1", "")->Reply, Done);
	EXPECT_FALSE(First->Poll("r1", "")->bAbandoned);
}

TEST_P(ModelStoreTest, AnAbandonedTurnIsTakenOverOnce)
{
	const auto Dead = Open();
	Dead->BeginTurn(MakeFirstTurn("one", "r1", "Hi"));
	Dead->ReleaseAll();
	std::vector<std::unique_ptr<ModelStore>> Stores;
	for (int Index = 0; Index < 6; ++Index)
	{
		Stores.push_back(Open());
	}
	std::atomic<int> NumClaims = 0;
	std::vector<std::thread> Threads;
	for (const auto& Each : Stores)
	{
		Threads.emplace_back([&NumClaims, &Each] { NumClaims += Each->Claim("r1").empty() ? 0 : 1; });
	}
	for (std::thread& Each : Threads)
	{
		Each.join();
	}
	EXPECT_EQ(NumClaims, 1);
}

TEST_P(ModelStoreTest, ASchemaOfTheFirstVersionIsMigrated)
{
	{
		const auto Old = Database.Open();
		Old->Migrate({ GetMigrations()[0] });
		Old->Run("INSERT INTO conversations VALUES ('one', 'r1', $1, NULL, '{\"a\":1}', $2)",
			{ std::string(R"({"message": "Hi", "engine_version": "5.4"})"), static_cast<int64_t>(std::time(nullptr)) });
		Old->Run("INSERT INTO usage VALUES (7, 1, 100, 0.5, 0.25)");
	}
	const auto Store = Open();
	const std::optional<StoredConversation> Found = Store->Load("r1");
	ASSERT_TRUE(Found);
	EXPECT_EQ(Found->State["a"], 1);
	EXPECT_EQ(Found->Turns[0].Message, "Hi");
	EXPECT_EQ(Store->GetUsage(7).Tokens, 100);
}

TEST_P(ModelStoreTest, ASchemaOfANewerVersionIsReported)
{
	{
		std::vector<const char*> Newer = GetMigrations();
		Newer.push_back("CREATE TABLE later (id BIGINT)");
		Database.Open()->Migrate(Newer);
	}
	try
	{
		Open();
		FAIL();
	}
	catch (const std::runtime_error& Error)
	{
		EXPECT_NE(std::string(Error.what()).find("newer version"), std::string::npos);
	}
}

TEST_P(ModelStoreTest, SeveralProcessesMayStartAtOnce)
{
	std::vector<std::thread> Threads;
	std::atomic<int> NumOpen = 0;
	for (int Index = 0; Index < 4; ++Index)
	{
		Threads.emplace_back([&] {
			Open();
			++NumOpen;
		});
	}
	for (std::thread& Each : Threads)
	{
		Each.join();
	}
	EXPECT_EQ(NumOpen, 4);
}

TEST(SqliteStoreTest, AFileThatCannotBeUsedIsReported)
{
	const TestFolder Folder;
	Folder.Write("text.sqlite", std::string(5000, 'x'));
	const auto Open = [](const std::string& Path) { ModelStore Store(SqlDatabase::OpenSqlite(Path)); };
	EXPECT_THROW(Open(Folder.Path + "/text.sqlite"), std::runtime_error);
	EXPECT_THROW(Open("/no/such/folder/state.sqlite"), std::runtime_error);
	Open(Folder.Path + "/good.sqlite");
	struct stat Info
	{
	};
	ASSERT_EQ(stat((Folder.Path + "/good.sqlite").c_str(), &Info), 0);
	EXPECT_EQ(Info.st_mode & 0777, 0600u) << "it holds what the project's files say";
}

TEST(PostgresStoreTest, AConnectionThatIsLostIsMadeAgain)
{
	const TestDatabase Database(TestDatabase::Kind::Postgres);
	ModelStore Store(Database.Open());
	Store.BeginTurn(MakeFirstTurn("one", "r1", "Hi"));
	// What a restart of the server does to them.
	Database.Open()->Run(
		"SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE datname = current_database() AND "
		"pid <> pg_backend_pid()");
	EXPECT_TRUE(Store.FinishTurn("r1", Json::object(), { { "status", "COMPLETED" } }));
	try
	{
		ModelStore(SqlDatabase::OpenPostgres("postgresql://x:canary-5309@/none?host=/no/such/folder"));
		FAIL();
	}
	catch (const std::runtime_error& Error)
	{
		EXPECT_NE(std::string(Error.what()).find("cannot be reached"), std::string::npos) << Error.what();
		EXPECT_EQ(std::string(Error.what()).find("canary-5309"), std::string::npos) << Error.what();
	}
}

TEST(StoredStateTest, DamagedStateIsRefusedOrGoesOn)
{
	ModelTalk Talk(ModelFormat::Messages);
	const Json Call = MakeCall("c1", "read_file", { { "path", "A.h" } });
	Talk.Server.Add(Says(ModelFormat::Messages, { { "text", "Hm." }, { "calls", Json::array({ Call }) } }));
	Talk.Send("Hi");
	const std::string State = Talk.Runner->ToJson().dump();
	EXPECT_EQ(Talk.Runner->ToJson().dump(), [&] {
		TurnRunner Other(Talk.Context);
		EXPECT_TRUE(Other.FromJson(Json::parse(State)));
		return Other.ToJson().dump();
	}());
	FTextMutator Mutator("{}[]\",:0truefalsnu\xc3");
	for (int Round = 0; Round < 3000; ++Round)
	{
		const Json Damaged = Json::parse(Mutator.Mutate(State), nullptr, false);
		TurnRunner Other(Talk.Context);
		if (!Damaged.is_discarded() && Other.FromJson(Damaged))
		{
			ASSERT_NO_THROW(Other.ToJson().dump(-1, ' ', false, Json::error_handler_t::replace));
		}
	}
}

TEST(StoredStateTest, DamagedRowsFailTheirTurnOrGoOn)
{
	const TestFolder Folder;
	const ModelFormat Format = ModelFormat::Messages;
	ModelTalk Talk(Format);
	Talk.Context.Config.Timeouts = { 1, 1, 1, 1, 0.1, 60 };
	Talk.Context.Config.Retries = { 1, 0.01, 0.01 };
	const Json Call = MakeCall("c1", "read_file", { { "path", "A.h" } });
	Talk.Server.Add(Says(Format, { { "text", "Hm." }, { "calls", Json::array({ Call }) } }));
	Talk.Send("Hi");
	const std::string State = Talk.Runner->ToJson().dump();
	const std::string Body = R"({"message": "More", "tool_results": [{"tool_use_id": "c1", "content": "x"}]})";
	const auto Store = std::make_shared<ModelStore>(SqlDatabase::OpenSqlite(Folder.Path + "/conversations.sqlite"));
	FTextMutator Mutator("{}[]\",:0truefalsnu\xc3");
	for (int Round = 0; Round < 60; ++Round)
	{
		const std::string Id = std::to_string(Round);
		Store->GetDatabase().Run("INSERT INTO conversations (id, request_id, state, progress, reply, updated) VALUES "
								 "($1, $1, $2, $3, $4, 1)",
			{ Id, Mutator.Mutate(State), Mutator.Mutate(R"({"status": "PROCESSING"})"),
				Round % 3 == 0 ? SqlValue(Mutator.Mutate(R"({"status": "COMPLETED"})")) : SqlValue(nullptr) });
		Store->GetDatabase().Run(
			"INSERT INTO turns VALUES ($1, $1, 1, $2)", { Id, Round % 2 == 0 ? Mutator.Mutate(Body) : Body });
		Talk.Server.Add(SaysText(Format, "Well."));
	}
	{
		ModelBackend Backend(Talk.Context.Config, Store);
		for (int Round = 0; Round < 60; ++Round)
		{
			const auto End = std::chrono::steady_clock::now() + std::chrono::seconds(20);
			Json Reply;
			do
			{
				Reply = Json::parse(Backend.Status(std::to_string(Round), "").Body);
				ASSERT_LT(std::chrono::steady_clock::now(), End) << Round;
			}
			while (Reply.value("status", "") == "PROCESSING");
		}
	}
	OperatorViews Views(*Store);
	for (int Round = 0; Round < 60; ++Round)
	{
		EXPECT_TRUE(Views.GetConversation(std::to_string(Round)).is_object());
	}
}

TEST(StoredStateTest, ADamagedFileIsReportedOrGoesOn)
{
	const TestFolder Folder;
	const std::string Path = Folder.Path + "/conversations.sqlite";
	{
		ModelStore Store(SqlDatabase::OpenSqlite(Path));
		Store.BeginTurn(MakeFirstTurn("one", "r1", std::string(3000, 'x')));
		Store.FinishTurn("r1", { { "a", 1 } }, { { "status", "COMPLETED" } });
	}
	std::ifstream File(Path, std::ios::binary);
	const std::string Good((std::istreambuf_iterator<char>(File)), std::istreambuf_iterator<char>());
	std::mt19937 Random(5309);
	for (int Round = 0; Round < 300; ++Round)
	{
		std::string Bad = Good;
		for (int Index = 0; Index < 1 + Round % 20; ++Index)
		{
			Bad[Random() % Bad.size()] = static_cast<char>(Random());
		}
		Bad.resize(Round % 7 == 0 ? Random() % Bad.size() : Bad.size());
		Folder.Write("conversations.sqlite", Bad);
		try
		{
			ModelStore Store(SqlDatabase::OpenSqlite(Path));
			Store.Load("r1");
			Store.Poll("r1", "");
			Store.BeginTurn(MakeTurn("one", "r2", "More"));
		}
		catch (const std::runtime_error& Error)
		{
			ASSERT_NE(std::string(Error.what()), "");
		}
		std::filesystem::remove(Path + "-wal");
		std::filesystem::remove(Path + "-shm");
	}
}
