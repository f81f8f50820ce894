#include "KeyRing.h"
#include "KeyCommand.h"
#include "ModelStore.h"
#include "TestDatabase.h"

#include <gtest/gtest.h>
#include <sstream>

namespace
{
class KeyRingTest : public testing::TestWithParam<TestDatabase::Kind>
{
protected:
	const TestDatabase Database = TestDatabase(GetParam());
	ModelStore Store = ModelStore(Database.Open());
};

INSTANTIATE_TEST_SUITE_P(EachDatabase, KeyRingTest,
	testing::Values(TestDatabase::Kind::Sqlite, TestDatabase::Kind::Postgres),
	[](const auto& Info) { return NameOf(Info.param); });

std::string RunKeys(std::vector<std::string> Words)
{
	std::ostringstream Out;
	try
	{
		RunKeyCommand(Words, Out);
	}
	catch (const std::runtime_error& Error)
	{
		return std::string("error: ") + Error.what();
	}
	return Out.str();
}
}

TEST_P(KeyRingTest, AKeyIsKnownUntilItIsRemovedAndKeptNowhere)
{
	KeyRing Keys(Store.GetDatabase());
	EXPECT_FALSE(Keys.HasKeys());
	const std::string Key = Keys.Add({ "anna", 0 });
	const std::string Other = Keys.Add({ "bert", 5 });
	EXPECT_NE(Key, Other);
	KeyRing Running(Store.GetDatabase());
	EXPECT_EQ(Running.Find(Key), "anna");
	EXPECT_EQ(Running.Find(Other), "bert");
	EXPECT_FALSE(Running.Find(Key + "x"));
	EXPECT_FALSE(Running.Find(""));
	for (const SqlRow& Row : Store.GetDatabase().Run("SELECT name, hash FROM keys"))
	{
		EXPECT_EQ((Row.GetText(0) + Row.GetText(1)).find(Key.substr(8, 16)), std::string::npos);
	}
	EXPECT_TRUE(Keys.Remove("anna"));
	EXPECT_FALSE(Keys.Remove("anna"));
	EXPECT_FALSE(KeyRing(Store.GetDatabase()).Find(Key));
	for (const char* Bad : { "", "a b", "a\"b", "a\nb" })
	{
		EXPECT_THROW(Keys.Add({ Bad, 0 }), std::runtime_error) << Bad;
	}
	EXPECT_THROW(Keys.Add({ "bert", 0 }), std::runtime_error) << "its owner would be locked out";
	EXPECT_THROW(Keys.Add({ "carl", -1 }), std::runtime_error);
}

TEST_P(KeyRingTest, ABudgetCountsTheMonth)
{
	KeyRing Keys(Store.GetDatabase());
	Keys.Add({ "anna", 2 });
	Keys.Add({ "free", 0 });
	const int64_t FirstDay = GetFirstDayOfMonth();
	Store.AddUsage("anna", FirstDay - 1, { 1, 100, 1, 50 });
	Store.AddUsage("anna", FirstDay, { 1, 100, 1, 1.5 });
	Store.AddUsage("free", FirstDay, { 1, 100, 1, 50 });
	EXPECT_EQ(Keys.FindReachedBudget("anna"), "") << "last month is over";
	Store.AddUsage("anna", FirstDay + 1, { 1, 100, 1, 0.5 });
	EXPECT_NE(Keys.FindReachedBudget("anna").find("budget of 2 per month"), std::string::npos);
	EXPECT_EQ(Keys.FindReachedBudget("free") + Keys.FindReachedBudget("unknown"), "");
	const std::vector<KeyUse> Listed = Keys.List();
	ASSERT_EQ(Listed.size(), 2u);
	EXPECT_EQ(Listed[0].Key.Name, "anna");
	EXPECT_EQ(Listed[0].Cost, 2);
	EXPECT_EQ(Listed[0].Tokens, 200);
}

TEST(KeyCommandTest, AddsListsAndRemoves)
{
	const TestFolder Folder;
	const std::string State = Folder.Path + "/state";
	const std::string Added = RunKeys({ "add", "anna", "--budget", "12.5", "--state", State });
	EXPECT_NE(Added.find("kestrel-"), std::string::npos) << Added;
	const std::string Listed = RunKeys({ "list", "--state", State });
	EXPECT_NE(Listed.find("anna"), std::string::npos) << Listed;
	EXPECT_NE(Listed.find("12.5"), std::string::npos) << Listed;
	EXPECT_EQ(Listed.find("kestrel-"), std::string::npos) << Listed;
	EXPECT_EQ(RunKeys({ "remove", "anna", "--state", State }), "");
	EXPECT_EQ(RunKeys({ "remove", "anna", "--state", State }), "error: There is no key named anna");
	for (const std::vector<std::string>& Bad : std::vector<std::vector<std::string>>{ {}, { "add", "--state", State },
			 { "add", "anna" }, { "drop", "anna", "--state", State }, { "add", "anna", "--state", State, "--budget" } })
	{
		EXPECT_NE(RunKeys(Bad).find("error: Usage"), std::string::npos);
	}
	EXPECT_NE(RunKeys({ "add", "a", "--state", State, "--budget", "much" }).find("--budget wants"), std::string::npos);

	Folder.Write("model.toml",
		"[server]\nkey_variable = \"NOT_SET_ANYWHERE\"\n[database]\nurl = \"" + TestPostgres::MakeDatabase() + "\"\n");
	EXPECT_NE(RunKeys({ "add", "anna", "--state", State, "--config", Folder.Path + "/model.toml" }).find("kestrel-"),
		std::string::npos)
		<< "without the model's key";
}
