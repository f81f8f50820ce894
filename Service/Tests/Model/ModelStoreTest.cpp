#include "ModelStore.h"
#include "ModelTalk.h"
#include "MutateText.h"
#include "TestFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace
{
Turn MakeTurn(const std::string& Message)
{
	Turn Result;
	Result.Message = Message;
	Result.EngineVersion = "5.4";
	return Result;
}
}

TEST(ModelStoreTest, KeepsAConversationAndItsLatestTurn)
{
	const TestFolder Folder;
	const std::string Path = Folder.Path + "/state.sqlite";
	const Json State = { { "a", 1 } };
	{
		ModelStore Store(Path);
		Store.BeginTurn("one", "r1", MakeTurn("\"Hi\" €"), true);
		Store.FinishTurn("one", "r1", State, { { "status", "COMPLETED" } });
		Store.BeginTurn("one", "r2", MakeTurn("More"), false);
		Store.FinishTurn("one", "r1", { { "late", true } }, { { "status", "FAILED" } });
		Store.AddUsage(7, { 1, 100, 0.5, 0.25 });
		Store.AddUsage(7, { 1, 100, 0.5, 0.25 });
	}
	ModelStore Store(Path);
	const std::optional<StoredConversation> Found = Store.FindRequest("r2");
	ASSERT_TRUE(Found);
	EXPECT_EQ(Found->Id, "one");
	EXPECT_EQ(Found->LatestTurn.Message + Found->LatestTurn.EngineVersion, "More5.4");
	EXPECT_EQ(Found->State, State) << "a turn that was replaced changes nothing";
	EXPECT_TRUE(Found->Reply.is_null());
	EXPECT_FALSE(Store.FindRequest("r1"));
	EXPECT_EQ(Store.GetUsage(7).Tokens, 200);
	EXPECT_EQ(Store.GetUsage(8).Tokens, 0);
	Store.BeginTurn("one", "r3", MakeTurn("Anew"), true);
	EXPECT_TRUE(Store.FindConversation("one")->State.is_null());

	struct stat Info
	{
	};
	ASSERT_EQ(stat(Path.c_str(), &Info), 0);
	EXPECT_EQ(Info.st_mode & 0777, 0600u) << "it holds what the project's files say";
}

TEST(ModelStoreTest, AFileThatCannotBeUsedIsReported)
{
	const TestFolder Folder;
	Folder.Write("text.sqlite", std::string(5000, 'x'));
	EXPECT_THROW(ModelStore(Folder.Path + "/text.sqlite"), std::runtime_error);
	EXPECT_THROW(ModelStore("/no/such/folder/state.sqlite"), std::runtime_error);
	{
		SqliteDatabase Newer(Folder.Path + "/newer.sqlite");
		Newer.Execute("PRAGMA user_version = 99");
	}
	try
	{
		ModelStore Store(Folder.Path + "/newer.sqlite");
		FAIL();
	}
	catch (const std::runtime_error& Error)
	{
		EXPECT_NE(std::string(Error.what()).find("newer version"), std::string::npos);
	}
}

TEST(ModelStoreTest, DamagedStateIsRefusedOrGoesOn)
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
