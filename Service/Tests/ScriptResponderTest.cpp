#include "ScriptResponder.h"

#include "TestFolder.h"

#include <gtest/gtest.h>

namespace
{
Turn Saying(const std::string& Message)
{
	Turn UserTurn;
	UserTurn.Message = Message;
	return UserTurn;
}

std::string ErrorOf(const Answer& Answered)
{
	return Json::parse(Answered.StatusReplies.back().Body).value("error", "");
}
}

TEST(ScriptResponderTest, ReplaysTurnsAndFaultsInOrder)
{
	const TestFolder Folder;
	Folder.Write("talk.json", R"({"turns": [
		{"command": {"code": 500, "raw": "oops"}},
		{"command": {"delay_seconds": 0.5}, "status": [{"status": "QUEUED"}, {"raw": "{", "code": 502}, {"drop": true}], "response": {"response": []}},
		{"expect": {"message": "exactly this", "was_confirmed": true}, "status": [{"status": "completed"}]}
	]})");
	const auto Talk = ScriptResponder(Folder.Path).Begin(Saying("script talk"));

	const Answer Broken = Talk->Respond(Saying("script talk"));
	EXPECT_EQ(Broken.CommandReply->Code, 500);
	EXPECT_EQ(Broken.CommandReply->Body, "oops");

	const Answer Slow = Talk->Respond(Saying("go on"));
	EXPECT_FALSE(Slow.CommandReply) << "only delayed";
	EXPECT_EQ(Slow.CommandDelaySeconds, 0.5);
	ASSERT_EQ(Slow.StatusReplies.size(), 4u);
	EXPECT_EQ(Slow.StatusReplies[0].Body, R"({"status":"QUEUED"})");
	EXPECT_EQ(Slow.StatusReplies[1].Code, 502);
	EXPECT_TRUE(Slow.StatusReplies[2].bDrop);
	EXPECT_EQ(Json::parse(Slow.StatusReplies[3].Body)["status"], "COMPLETED");

	Turn Third = Saying("exactly this");
	EXPECT_NE(ErrorOf(Talk->Respond(Third)).find("was_confirmed"), std::string::npos);
	EXPECT_EQ(ErrorOf(Talk->Respond(Third)), "The script has no further turn.");
}

TEST(ScriptResponderTest, ABadNameOrFileFailsTheTurn)
{
	const TestFolder Folder;
	const ScriptResponder Scripts(Folder.Path);
	Folder.Write("broken.json", "{");
	for (const char* Message : { "hello", "script ../etc/passwd", "script missing", "script broken", "script " })
	{
		EXPECT_FALSE(ErrorOf(Scripts.Begin(Saying(Message))->Respond(Saying(Message))).empty()) << Message;
	}
}
