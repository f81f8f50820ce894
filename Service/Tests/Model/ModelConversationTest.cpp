#include "JsonFields.h"
#include "ModelTalk.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>

// Conversations with both sides in a data file, played in both formats. A turn says what the client sends; then, for
// each request that is expected, a part of its last message and what the model answers; then what the client is sent.

namespace
{
/** What the last message of a request says: its results and its text. */
std::string DescribeLastMessage(ModelFormat Format, const Json& Body)
{
	std::string Text;
	const Json& Messages = GetList(Body, "messages");
	if (Format == ModelFormat::Messages)
	{
		for (const Json& Block : Messages.back()["content"])
		{
			Text += (GetMember(Block, "is_error") == true ? "failed: " : "") + GetText(Block, "content") +
					GetText(Block, "text") + "\n";
		}
		return Text;
	}
	for (const Json& Message : Messages)
	{
		const std::string Role = GetText(Message, "role");
		Text = Role == "assistant" || Role == "system" ? "" : Text + GetText(Message, "content") + "\n";
	}
	return Text;
}

std::string DescribeReply(const Json& Reply)
{
	std::string Text = Reply["status"].get<std::string>() + ": " + ModelTalk::TextOf(Reply);
	for (const Json& Call : ModelTalk::CallsOf(Reply))
	{
		Text += " [" + Call["name"].get<std::string>() + " " + Call["input"].dump() + "]";
	}
	const bool bAsks = Reply.contains("response") && !Reply["response"]["auto_continue"].get<bool>();
	return Text + (bAsks ? " (asks)" : "");
}

/** Results for calls by their place in the previous reply: "0" and so on, or an id. */
Json MakeResults(const Json& Results, const std::vector<Json>& Calls)
{
	Json Blocks = Json();
	for (const auto& [Key, Result] : Results.items())
	{
		const bool bPlace = Key.size() == 1 && Key[0] >= '0' && static_cast<size_t>(Key[0] - '0') < Calls.size();
		const std::string Id = bPlace ? Calls[static_cast<size_t>(Key[0] - '0')]["id"].get<std::string>() : Key;
		Json Block = Result.is_string() ? MakeToolResult(Id, Result) : Result;
		Block["tool_use_id"] = Id;
		Blocks.push_back(Block);
	}
	return Blocks;
}

void Play(ModelFormat Format, const Json& Script)
{
	ModelTalk Talk(Format);
	Talk.Tree = Script.value("tree", Json::object());
	Talk.Context.Config.PerConversation.Requests = GetCount(GetMember(Script, "limits"), "requests");
	std::vector<Json> Calls;
	size_t NumRequests = 0;
	for (const Json& Turn : Script["turns"])
	{
		for (const Json& Exchange : GetList(Turn, "model"))
		{
			Talk.Server.Add(Says(Format, Exchange["says"]));
		}
		const Json Reply =
			Talk.Send(GetText(Turn, "message"), MakeResults(Turn.value("results", Json::object()), Calls));
		EXPECT_EQ(DescribeReply(Reply), GetText(Turn, "reply"));
		Calls = ModelTalk::CallsOf(Reply);
		const std::vector<Json> Requests = Talk.Server.GetRequests();
		for (const Json& Exchange : GetList(Turn, "model"))
		{
			ASSERT_LT(NumRequests, Requests.size()) << "a request is missing: " << Exchange.dump();
			const std::string Said = DescribeLastMessage(Format, Requests[NumRequests++]);
			EXPECT_NE(Said.find(GetText(Exchange, "hears")), std::string::npos)
				<< Said << "\nlacks " << Exchange["hears"];
		}
		ASSERT_EQ(NumRequests, Requests.size());
	}
	EXPECT_EQ(Talk.Server.GetProblems(), "");
}
}

TEST(ModelConversationTest, EachConversationGoesAsWritten)
{
	size_t NumFiles = 0;
	for (const auto& Entry : std::filesystem::directory_iterator(MODEL_CONVERSATIONS))
	{
		std::ifstream File(Entry.path());
		const Json Script = Json::parse(File);
		for (const ModelFormat Format : BothFormats)
		{
			SCOPED_TRACE(Entry.path().filename().string() + ", " + NameOf(Format));
			Play(Format, Script);
		}
		++NumFiles;
	}
	EXPECT_GE(NumFiles, 8u);
}

TEST(ModelConversationTest, WhateverAUserDoesEveryRequestIsValid)
{
	std::mt19937 Random(20261122);
	const auto Chance = [&Random](int Percent) { return static_cast<int>(Random() % 100) < Percent; };
	for (int Round = 0; Round < 24; ++Round)
	{
		const ModelFormat Format = BothFormats[Round % 2];
		ModelTalk Talk(Format);
		Talk.Context.Config.Server.ContextTokens = Chance(50) ? 100'000 : 14'000;
		Talk.Context.Config.Server.MaxOutputTokens = 1000;
		std::vector<Json> Calls;
		for (int TurnIndex = 0; TurnIndex < 12; ++TurnIndex)
		{
			Json Results = Json::array();
			for (const Json& Call : Calls)
			{
				const std::string Id = Chance(5) ? "stray" : Call["id"].get<std::string>();
				const Json Aborted = { { "tool_use_id", Id }, { "content", "Abort" }, { "is_abort", true } };
				const Json Done = MakeToolResult(Id, Chance(20) ? "" : std::string(Random() % 9000, 'r'), Chance(40));
				Chance(20) ? (void)0 : Results.push_back(Chance(20) ? Aborted : Done);
			}
			Chance(5) ? Results.push_back(MakeToolResult("Undo", "built")) : (void)0;
			Chance(5) ? Results.push_back("nonsense") : (void)0;
			// A few more replies than are needed: failures, invalid calls, summaries and answers take some each.
			for (int Reply = 0; Reply < 8; ++Reply)
			{
				const Json Call = MakeCall(Chance(30) ? "same" : "c" + std::to_string(Random()),
					Chance(10) ? "unknown" : "read_file", { { Chance(10) ? "file" : "path", "A.h" } });
				const Json Both = Json::array({ Call, MakeCall("same", "compile", Json::object()) });
				ScriptedReply Reply_ = Says(Format,
					{ { "text", Chance(20) ? "" : "Text" }, { "calls", Chance(30)   ? Json::array()
																	   : Chance(50) ? Both
																					: Json::array({ Call }) } });
				Reply_.Head = Chance(10) ? "HTTP/1.1 400 Bad Request\r\n\r\n" : Reply_.Head;
				Talk.Server.Add(Reply_);
			}
			Calls = ModelTalk::CallsOf(Talk.Send(Chance(50) ? "Next" : "", Chance(10) ? Json() : Results));
		}
		ASSERT_EQ(Talk.Server.GetProblems(), "") << Round;
	}
}

TEST(ModelConversationTest, ALongConversationIsShortenedAndSummarized)
{
	for (const ModelFormat Format : BothFormats)
	{
		ModelTalk Talk(Format);
		Talk.Context.Config.Server.ContextTokens = 20'000;
		Talk.Context.Config.Server.MaxOutputTokens = 1000;
		for (int Index = 0; Index < 40; ++Index)
		{
			const Json Call = MakeCall("c" + std::to_string(Index), "read_file", { { "path", "A.h" } });
			Talk.Server.Add(Says(Format, { { "text", std::string(300, 't') }, { "calls", Json::array({ Call }) } }));
			const std::vector<Json> Calls = ModelTalk::CallsOf(
				Talk.Send("Go on", Index == 0 ? Json()
											  : Json::array({ MakeToolResult("c" + std::to_string(Index - 1),
													std::string(6000, 'r') + "\nline") })));
			if (Calls.empty())
			{
				// This reply was the summary that came before.
				Talk.Server.Add(SaysText(Format, "Go."));
			}
		}
		size_t Largest = 0;
		for (const Json& Request : Talk.Server.GetRequests())
		{
			Largest = std::max(Largest, Request.dump().size());
		}
		EXPECT_EQ(Talk.Server.GetProblems().find("result"), std::string::npos) << Talk.Server.GetProblems();
		EXPECT_LT(Largest, 20'000u * 3.5);
		const std::string Last = Talk.Server.GetRequests().back().dump();
		EXPECT_NE(Last.find("dropped to save space"), std::string::npos);
	}
}
