#include "ModelTalk.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <zlib.h>

// What goes wrong between a service and model servers, in both formats. Each case says what the user sees and how many
// requests were sent; afterwards the next prompt has to work, and no request may break a server's rules.

namespace
{
using Ending = ScriptedReply::Ending;

ScriptedReply Fails(const std::string& Status, const std::string& Body, const std::string& Headers = "")
{
	return { "HTTP/1.1 " + Status + "\r\n" + Headers + "\r\n", Body, Ending::Close, false };
}

ScriptedReply Streams(const std::string& Body, Ending End = Ending::Close)
{
	ScriptedReply Reply;
	Reply.Body = Body;
	Reply.End = End;
	return Reply;
}

std::string Event(const Json& Data)
{
	return "data: " + Data.dump() + "\n\n";
}

/** A chunk of a chat stream. */
std::string Chunk(const Json& Delta, const Json& Reason = nullptr)
{
	return Event({ { "choices", Json::array({ { { "delta", Delta }, { "finish_reason", Reason } } }) } });
}

std::string CallChunk(const Json& Piece)
{
	return Chunk({ { "tool_calls", Json::array({ Piece }) } });
}

std::string Block(int Index, const Json& Start, const std::vector<Json>& Deltas)
{
	std::string Stream = Event({ { "type", "content_block_start" }, { "index", Index }, { "content_block", Start } });
	for (const Json& Delta : Deltas)
	{
		Stream += Event({ { "type", "content_block_delta" }, { "index", Index }, { "delta", Delta } });
	}
	return Stream + Event({ { "type", "content_block_stop" }, { "index", Index } });
}

std::string EndOfMessage(const std::string& Reason)
{
	return Event({ { "type", "message_delta" }, { "delta", { { "stop_reason", Reason } } } }) +
		   Event({ { "type", "message_stop" } });
}

std::string Gzip(const std::string& Text)
{
	constexpr int GzipWindow = 15 + 16;
	z_stream Stream = {};
	deflateInit2(&Stream, Z_BEST_SPEED, Z_DEFLATED, GzipWindow, 8, Z_DEFAULT_STRATEGY);
	std::string Packed(Text.size() + 100, '\0');
	Stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(Text.data()));
	Stream.avail_in = static_cast<uInt>(Text.size());
	Stream.next_out = reinterpret_cast<Bytef*>(Packed.data());
	Stream.avail_out = static_cast<uInt>(Packed.size());
	deflate(&Stream, Z_FINISH);
	Packed.resize(Stream.total_out);
	deflateEnd(&Stream);
	return Packed;
}

std::string Replace(std::string Text, const std::string& From, const std::string& To)
{
	for (size_t At = Text.find(From); At != std::string::npos; At = Text.find(From, At + To.size()))
	{
		Text.replace(At, From.size(), To);
	}
	return Text;
}

/** A whole reply in place of a stream. */
std::string WholeReply(ModelFormat Format, const std::string& Text)
{
	return Format == ModelFormat::Messages
			   ? Json({ { "type", "message" }, { "content", Json::array({ { { "type", "text" }, { "text", Text } } }) },
						  { "stop_reason", "end_turn" } })
					 .dump()
			   : Json({ { "object", "chat.completion" },
						  { "choices", Json::array({ { { "message", { { "content", Text } } },
										   { "finish_reason", "stop" } } }) } })
					 .dump();
}

struct FaultCase
{
	const char* Name;
	std::vector<ScriptedReply> Chat;
	std::vector<ScriptedReply> Messages; // empty when the fault is of one format
	const char* Expected;                // in what the user sees
	size_t NumRequests;
};

/** A case that is the same in both formats, but for what the model says. */
FaultCase InBoth(const char* Name, const std::function<std::vector<ScriptedReply>(ModelFormat)>& Make,
	const char* Expected, size_t NumRequests)
{
	return { Name, Make(ModelFormat::ChatCompletions), Make(ModelFormat::Messages), Expected, NumRequests };
}

std::vector<FaultCase> MakeConnectionCases()
{
	const auto Good = [](ModelFormat Format) { return SaysText(Format, "Fine."); };
	const auto Begun = [](ModelFormat Format) {
		const std::string Stream = RenderStream(Format, { { "text", "Half an answer" } });
		return Stream.substr(0, Stream.find("answer") + 60);
	};
	return {
		// Each takes a second, so that one format has to do.
		{ "accepts and never answers", std::vector<ScriptedReply>(3, { "", "", Ending::Silence, false }), {},
			"stopped answering", 3 },
		{ "a head and then silence", {}, std::vector<ScriptedReply>(3, Streams("", Ending::Silence)),
			"stopped answering", 3 },
		InBoth(
			"reset in the middle of the stream, then good",
			[&](auto F) {
				return std::vector{ Streams(Begun(F), Ending::Reset), Good(F) };
			},
			"Fine.", 2),
		InBoth(
			"closed before the end of the stream, then good",
			[&](auto F) {
				return std::vector{ Streams(Begun(F)), Good(F) };
			},
			"Fine.", 2),
		InBoth(
			"closed before the end each time", [&](auto F) { return std::vector<ScriptedReply>(3, Streams(Begun(F))); },
			"ended too early", 3),
		InBoth(
			"one byte a packet",
			[](auto F) {
				ScriptedReply Reply = SaysText(F, "Grüße 🦅");
				Reply.bByteByByte = true;
				return std::vector{ Reply };
			},
			"Grüße 🦅", 1),
	};
}

std::vector<FaultCase> MakeStatusCases()
{
	const auto Good = [](ModelFormat Format) { return SaysText(Format, "Fine."); };
	const auto Error = [](const char* Type, const std::string& Message) {
		return Json(
			{ { "type", "error" }, { "error", { { "type", Type }, { "code", Type }, { "message", Message } } } })
			.dump();
	};
	return {
		InBoth(
			"a refused key, repeated in the message",
			[&](auto) {
				return std::vector{ Fails(
					"401 Unauthorized", Error("authentication_error", std::string("no such key: ") + ModelTalk::Key)) };
			},
			"rejected the key (HTTP 401): no such key: [key]", 1),
		InBoth(
			"too many requests, with the time to wait",
			[&](auto F) {
				return std::vector{ Fails("429 Too Many", Error("rate_limit_error", "slow"), "retry-after-ms: 20\r\n"),
					Good(F) };
			},
			"Fine.", 2),
		InBoth(
			"a time to wait that is too long",
			[&](auto) {
				return std::vector{ Fails(
					"429 Too Many", Error("rate_limit_error", "slow down"), "retry-after: 300\r\n") };
			},
			"is busy (HTTP 429): slow down", 1),
		InBoth(
			"no credit left",
			[&](auto) { return std::vector{ Fails("429 Too Many", Error("insufficient_quota", "pay")) }; },
			"no credit left", 1),
		InBoth(
			"fails twice, then good",
			[&](auto F) {
				const ScriptedReply Failure = Fails("500 Oops", Error("api_error", "oops"));
				return std::vector{ Failure, Failure, Good(F) };
			},
			"Fine.", 3),
		InBoth(
			"fails, and says that repeating is of no use",
			[&](auto) { return std::vector{ Fails("500 Oops", "", "x-should-retry: false\r\n") }; },
			"failed (HTTP 500).", 1),
		InBoth(
			"overloaded, with a page of a proxy",
			[&](auto) { return std::vector<ScriptedReply>(3, Fails("529 Busy", "<html><body>Busy</body></html>")); },
			"is busy (HTTP 529).", 3),
		InBoth(
			"an error as the first event",
			[&](auto F) {
				return std::vector{ Streams("data: " + Error("overloaded_error", "later") + "\n\n"), Good(F) };
			},
			"Fine.", 2),
		InBoth(
			"an error after text",
			[&](auto F) {
				const std::string Stream = RenderStream(F, { { "text", "Half" } });
				const std::string Half = Stream.substr(0, Stream.find("\n\n", Stream.find("Half")) + 2);
				return std::vector{
					Streams(Half + "event: error\ndata: " + Error("overloaded_error", "later") + "\n\n"), Good(F)
				};
			},
			"Fine.", 2),
		InBoth(
			"a redirect",
			[&](auto) { return std::vector{ Fails("307 Elsewhere", "", "Location: http://127.0.0.1:1/v1\r\n") }; },
			"redirects elsewhere", 1),
		InBoth(
			"an unknown model",
			[&](auto) { return std::vector{ Fails("404 Not Found", R"({"detail":"no model 'm'"})") }; },
			"check server.base_url and server.model (HTTP 404): no model 'm'", 1),
		InBoth(
			"compressed, without a type",
			[](auto F) {
				return std::vector{ ScriptedReply{ "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n",
					Gzip(RenderStream(F, { { "text", "Unpacked." } })), Ending::Close, false } };
			},
			"Unpacked.", 1),
		InBoth(
			"one document although a stream was asked for",
			[](auto F) { return std::vector{ Streams(WholeReply(F, "In one piece.")) }; }, "In one piece.", 1),
	};
}

std::vector<FaultCase> MakeStreamCases()
{
	const std::string Reasoning = Block(0, { { "type", "thinking" }, { "thinking", "" } },
		{ { { "type", "thinking_delta" }, { "thinking", "Hm" } },
			{ { "type", "signature_delta" }, { "signature", "S1g=" } } });
	const std::string Text =
		Block(1, { { "type", "text" }, { "text", "" } }, { { { "type", "text_delta" }, { "text", "Fine." } } });
	return {
		InBoth(
			"CR LF, comments, no space behind data, unknown events",
			[](auto F) {
				const std::string Stream =
					Replace(Replace(RenderStream(F, { { "text", "Fine." } }), "data: ", "data:"), "\n", "\r\n");
				return std::vector{ Streams(": ping\r\n\r\nevent: odd\r\ndata: {\"type\":\"odd\"}\r\n\r\n" + Stream) };
			},
			"Fine.", 1),
		InBoth(
			"an event of two megabytes",
			[](auto F) { return std::vector{ SaysText(F, std::string(2 << 20, 'x') + " Fine.") }; }, "Fine.", 1),
		{ "no end mark, but a reason to end", { Streams(Chunk({ { "content", "Fine." } }, "stop")) }, {}, "Fine.", 1 },
		{ "no end of the message", {},
			{ Streams(Replace(RenderStream(ModelFormat::Messages, { { "text", "Half" } }), "message_stop", "odd")),
				SaysText(ModelFormat::Messages, "Fine.") },
			"Fine.", 2 },
		InBoth(
			"unknown members, blocks and deltas",
			[](auto F) {
				const std::string Odd = F == ModelFormat::Messages
											? Block(7, { { "type", "odd" } }, { { { "type", "odd_delta" } } })
											: Chunk({ { "odd", 1 }, { "obfuscation", "xyz" } });
				return std::vector{ Streams(Odd + RenderStream(F, { { "text", "Fine." } })) };
			},
			"Fine.", 1),
		{ "reasoning beside the text and in front of it",
			{ Streams(Chunk({ { "reasoning_content", "Hm" } }) + Chunk({ { "reasoning", "Hm" } }) +
					  Chunk({ { "content", "<think>Hm</think>Fine." } }, "stop")) },
			{ Streams(Reasoning + Text + EndOfMessage("end_turn")) }, "Fine.", 1 },
		InBoth(
			"no text at all",
			[](auto F) {
				return std::vector{ Says(F, { { "text", "" } }) };
			},
			"(The model gave no answer.)", 1),
		{ "a call in the text",
			{ SaysText(ModelFormat::ChatCompletions, "<tool_call>{\"name\":\"compile\"}</tool_call>") }, {},
			"does not parse tool calls", 1 },
	};
}

/** What the model wanted: "name input" for each call that reached the editor. */
std::string DescribeCalls(const Json& Reply)
{
	std::string Text;
	for (const Json& Call : ModelTalk::CallsOf(Reply))
	{
		Text += Call["name"].get<std::string>() + " " + Call["input"].dump() + "; ";
	}
	return Text;
}

Json Piece(const Json& Index, const Json& Id, const Json& Name, const Json& Arguments)
{
	Json Result = Json::object();
	if (!Index.is_null())
	{
		Result["index"] = Index;
	}
	Result["id"] = Id;
	Result["function"] = { { "name", Name }, { "arguments", Arguments } };
	return Result;
}

std::vector<FaultCase> MakeCallCases()
{
	const char* const A = R"({"path":"A"})";
	const char* const B = R"({"path":"B"})";
	const auto ChatCalls = [](const std::vector<Json>& Pieces, const char* Reason = "tool_calls") {
		std::string Stream;
		for (const Json& Each : Pieces)
		{
			Stream += CallChunk(Each);
		}
		return Streams(Stream + Chunk(Json::object(), Reason) + "data: [DONE]\n\n");
	};
	const ScriptedReply Good = SaysText(ModelFormat::ChatCompletions, "Fine.");
	const auto CutOff = [](ModelFormat F) {
		return F == ModelFormat::Messages
				   ? Streams(Block(0,
								 { { "type", "tool_use" }, { "id", "t" }, { "name", "create_file" },
									 { "input", Json::object() } },
								 { { { "type", "input_json_delta" }, { "partial_json", "{\"path\":\"A" } } }) +
							 EndOfMessage("max_tokens"))
				   : Streams(
						 CallChunk(Piece(0, "t", "create_file", "{\"path\":\"A")) + Chunk(Json::object(), "length"));
	};
	const auto Calls = [](ModelFormat F, const char* Name, const Json& Input) {
		return Says(F, { { "calls", Json::array({ MakeCall("t", Name, Input) }) } });
	};
	return {
		{ "two calls in turns",
			{ ChatCalls({ Piece(0, "a", "read_file", "{\"path\":"), Piece(1, "b", "read_file", "{\"path\":"),
				Piece(0, nullptr, nullptr, "\"A\"}"), Piece(1, nullptr, nullptr, "\"B\"}") }) },
			{}, "read_file {\"path\":\"A\"}; read_file {\"path\":\"B\"}; ", 1 },
		{ "no index", { ChatCalls({ Piece(nullptr, "a", "read_file", A), Piece(nullptr, "b", "read_file", B) }) }, {},
			"read_file {\"path\":\"A\"}; read_file {\"path\":\"B\"}; ", 1 },
		{ "no index, in pieces",
			{ ChatCalls(
				{ Piece(nullptr, "a", "read_file", "{\"path\""), Piece(nullptr, nullptr, nullptr, ":\"A\"}") }) },
			{}, "read_file {\"path\":\"A\"}; ", 1 },
		{ "always the index 0", { ChatCalls({ Piece(0, "a", "read_file", A), Piece(0, "b", "read_file", B) }) }, {},
			"read_file {\"path\":\"A\"}; read_file {\"path\":\"B\"}; ", 1 },
		{ "no id", { ChatCalls({ Piece(0, nullptr, "read_file", A), Piece(1, "", "read_file", B) }) }, {},
			"read_file {\"path\":\"A\"}; read_file {\"path\":\"B\"}; ", 1 },
		{ "id and name in every piece",
			{ ChatCalls({ Piece(0, "a", "read_file", "{\"path\""), Piece(0, "a", "read_file", ":\"A\"}") }) }, {},
			"read_file {\"path\":\"A\"}; ", 1 },
		{ "arguments as an object, and none",
			{ ChatCalls({ Piece(0, "a", "read_file", { { "path", "A" } }), Piece(1, "b", "finish", "") }) }, {},
			"read_file {\"path\":\"A\"}; finish {}; ", 1 },
		{ "calls, but the end of a text", { ChatCalls({ Piece(0, "a", "read_file", A) }, "stop") }, {},
			"read_file {\"path\":\"A\"}; ", 1 },
		{ "the end of calls, but none", { Streams(Chunk({ { "content", "Fine." } }, "tool_calls")) },
			{ Streams(Block(0, { { "type", "text" }, { "text", "Fine." } }, {}) + EndOfMessage("tool_use")) }, "Fine.",
			1 },
		InBoth(
			"a call that is cut off goes back to the model",
			[&](auto F) {
				return std::vector{ CutOff(F), SaysText(F, "Fine.") };
			},
			"Fine.", 2),
		InBoth(
			"a tool that is none",
			[&](auto F) {
				return std::vector{ Calls(F, "drop_table", Json::object()), SaysText(F, "Fine.") };
			},
			"Fine.", 2),
		InBoth(
			"an input that does not fit",
			[&](auto F) {
				return std::vector{ Calls(F, "read_file", { { "file", "A" } }), SaysText(F, "Fine.") };
			},
			"Fine.", 2),
		InBoth(
			"an input that never fits",
			[&](auto F) {
				return std::vector<ScriptedReply>(4, Calls(F, "read_file", { { "file", "A" } }));
			},
			"same call to a tool failed", 4),
		{ "arguments that are no JSON", { ChatCalls({ Piece(0, "a", "read_file", "{'path': A}") }), Good }, {}, "Fine.",
			2 },
	};
}

void Check(const FaultCase& Case, ModelFormat Format, const std::vector<ScriptedReply>& Replies)
{
	SCOPED_TRACE(std::string(NameOf(Format)) + ": " + Case.Name);
	ModelTalk Talk(Format, Replies);
	const Json Reply = Talk.Send("Do it.");
	const std::string Seen = ModelTalk::TextOf(Reply) + DescribeCalls(Reply);
	EXPECT_NE(Seen.find(Case.Expected), std::string::npos) << Seen;
	EXPECT_EQ(Seen.find(ModelTalk::Key), std::string::npos);
	EXPECT_EQ(Talk.Server.CountRequests(), Case.NumRequests);

	Talk.Server.Add(SaysText(Format, "Next."));
	EXPECT_EQ(ModelTalk::TextOf(Talk.Send("And now?")), "Next.");
	EXPECT_EQ(Talk.Server.GetProblems(), "");
}

void CheckAll(const std::vector<FaultCase>& Cases)
{
	for (const FaultCase& Case : Cases)
	{
		if (!Case.Chat.empty())
		{
			Check(Case, ModelFormat::ChatCompletions, Case.Chat);
		}
		if (!Case.Messages.empty())
		{
			Check(Case, ModelFormat::Messages, Case.Messages);
		}
	}
}
}

TEST(ModelFaultTest, Connections)
{
	CheckAll(MakeConnectionCases());
}

TEST(ModelFaultTest, StatusCodes)
{
	CheckAll(MakeStatusCases());
}

TEST(ModelFaultTest, Streams)
{
	CheckAll(MakeStreamCases());
}

TEST(ModelFaultTest, Calls)
{
	CheckAll(MakeCallCases());
}

TEST(ModelFaultTest, AServerThatIsNotThereIsNamed)
{
	for (const ModelFormat Format : BothFormats)
	{
		ModelTalk Talk(Format, { SaysText(Format, "Back.") });
		Talk.Context.Config.Server.BaseUrl = "http://127.0.0.1:1/v1";
		EXPECT_NE(ModelTalk::TextOf(Talk.Send("Hi")).find("127.0.0.1:1 cannot be reached"), std::string::npos);
		Talk.Context.Config.Server.BaseUrl = Talk.Server.GetUrl();
		EXPECT_EQ(ModelTalk::TextOf(Talk.Send("And now?")), "Back.");
	}
}

TEST(ModelFaultTest, SignedReasoningGoesBackUnchanged)
{
	const Json Thinking = { { "type", "thinking" }, { "thinking", "Hm €" }, { "signature", "S1g=" } };
	const Json Redacted = { { "type", "redacted_thinking" }, { "data", "xyz==" } };
	ModelTalk Talk(ModelFormat::Messages,
		{ Streams(
			  Block(0, { { "type", "thinking" }, { "thinking", "" } },
				  { { { "type", "thinking_delta" }, { "thinking", "Hm €" } },
					  { { "type", "signature_delta" }, { "signature", "S1g=" } } }) +
			  Block(1, Redacted, {}) +
			  Block(2, { { "type", "tool_use" }, { "id", "t1" }, { "name", "finish" }, { "input", Json::object() } },
				  {}) +
			  EndOfMessage("tool_use")),
			SaysText(ModelFormat::Messages, "Fine.") });
	Talk.Send("Go");
	Talk.Send("More", Json::array({ MakeToolResult("t1", "Finished") }));
	const Json Content = Talk.Server.GetRequests().back()["messages"][1]["content"];
	EXPECT_EQ(Content[0].dump(), Thinking.dump());
	EXPECT_EQ(Content[1].dump(), Redacted.dump());
	EXPECT_EQ(Talk.Server.GetProblems(), "");
}

TEST(ModelFaultTest, AConversationThatIsTooLongIsShortenedOnce)
{
	const char* const Wordings[] = {
		R"({"error":{"code":"context_length_exceeded","message":"too long"}})",
		R"({"error":{"code":400,"type":"exceed_context_size_error","message":"n"}})",
		R"({"object":"error","message":"This model's maximum context length is 5 tokens.","code":400})",
		R"({"type":"error","error":{"type":"invalid_request_error","message":"prompt is too long: 9 tokens"}})",
	};
	for (const ModelFormat Format : BothFormats)
	{
		for (const char* Wording : Wordings)
		{
			SCOPED_TRACE(std::string(NameOf(Format)) + Wording);
			ModelTalk Talk(Format, { SaysText(Format, "One."), Fails("400 Bad", Wording), SaysText(Format, "Two.") });
			Talk.Send("First");
			EXPECT_EQ(ModelTalk::TextOf(Talk.Send("Second")), "Two.");
			Talk.Server.Add(Fails("400 Bad", Wording));
			Talk.Server.Add(Fails("400 Bad", Wording));
			EXPECT_NE(ModelTalk::TextOf(Talk.Send("Third")).find("too long for the model"), std::string::npos);
			EXPECT_EQ(Talk.Server.CountRequests(), 5u);
		}
	}
}

TEST(ModelFaultTest, AServerThatDropsTheBeginningIsReported)
{
	for (const ModelFormat Format : BothFormats)
	{
		ModelTalk Talk(
			Format, { Says(Format, { { "text", "Yes." }, { "usage", { { "input", 500 }, { "output", 1 } } } }) });
		const std::string Text = ModelTalk::TextOf(Talk.Send(std::string(60'000, 'x')));
		EXPECT_NE(Text.find("seems to drop the beginning"), std::string::npos) << Text;
	}
}

namespace
{
ScriptedReply CallAndEnd(const Json& Call)
{
	return Streams(CallChunk(Call) + Chunk(Json::object(), "tool_calls") + "data: [DONE]\n\n");
}
}

TEST(ModelFaultTest, AKeyThatAServerRepeatsIsSeenAndStoredNowhere)
{
	const std::string Key = ModelTalk::Key;
	const std::string Part = Key.substr(0, 8);
	const ScriptedReply CutInTheKey = { "HTTP/1.1 400 Bad Request\r\n\r\n", std::string(490, 'x') + Key };
	const Json Thinking = { { "type", "thinking" }, { "thinking", "It is " + Key }, { "signature", "S1g=" } };
	const std::pair<ModelFormat, ScriptedReply> Cases[] = {
		{ ModelFormat::ChatCompletions, CutInTheKey },
		{ ModelFormat::ChatCompletions, CallAndEnd(Piece(0, Key, "read_file", R"({"path":"A"})")) },
		{ ModelFormat::ChatCompletions, CallAndEnd(Piece(0, "a", Key, "{}")) },
		{ ModelFormat::ChatCompletions,
			CallAndEnd(Piece(0, "a", "read_file", Json({ { "path", Key }, { Key, "A" } }).dump())) },
		{ ModelFormat::Messages, Streams(Block(0, Thinking, {}) + EndOfMessage("end_turn")) },
	};
	for (const auto& [Format, Reply] : Cases)
	{
		ModelTalk Talk(Format, { Reply, SaysText(Format, "Fine.") });
		const std::string Seen = Talk.Send("Do it.").dump() + Talk.Runner->ToJson().dump();
		EXPECT_EQ(Seen.find(Part), std::string::npos) << Seen;
		EXPECT_EQ(Talk.Server.GetProblems(), "");
	}
}

TEST(ModelFaultTest, ABegunAnswerNeverEndsWithinTheKey)
{
	const Secret Key(ModelTalk::Key);
	EXPECT_EQ(Key.HideInBeginning("It is canary-key-530"), "It is ");
	EXPECT_EQ(Key.HideInBeginning("It is canary-key-5309, c"), "It is [key], ");
	EXPECT_EQ(Key.HideInBeginning("It is canned."), "It is canned.");
}

TEST(ModelFaultTest, AShortKeyIsAWordLikeAnyOther)
{
	// What people give local servers, which want any key at all.
	ModelTalk Talk(ModelFormat::ChatCompletions,
		{ CallAndEnd(Piece(0, "a", "create_file", R"({"path":"A.txt","file_text":"x is none"})")) });
	Talk.Context.Config.Server.Key = Secret("none");
	const std::vector<Json> Made = ModelTalk::CallsOf(Talk.Send("Do it."));
	ASSERT_EQ(Made.size(), 1u);
	EXPECT_EQ(Made[0]["input"]["file_text"], "x is none");
}

TEST(ModelFaultTest, AMessageHasNothingThatATerminalObeys)
{
	const std::string Evil = "\x1b[31m\xC2\x9B\x33m\xE2\x80\xAE|\xFF\x9B|Grüße";
	ModelTalk Talk(ModelFormat::Messages, { { "HTTP/1.1 400 Bad Request\r\n\r\n", Evil } });
	const std::string Valid = ModelTalk::TextOf(Talk.Send("Do it."));
	EXPECT_EQ(Valid.find_first_of("\x1b\x9B\xFF\xAE"), std::string::npos) << Valid;
}

TEST(ModelFaultTest, ImpossibleCountsOfTokensAreLimited)
{
	for (const ModelFormat Format : BothFormats)
	{
		for (const char* Count : { "9223372036854775807", "18446744073709551615" })
		{
			const std::string Usage = Replace(
				R"("usage":{"prompt_tokens":#,"completion_tokens":#,"input_tokens":#,"cache_read_input_tokens":#,"output_tokens":#,"prompt_tokens_details":{"cached_tokens":#}})",
				"#", Count);
			ModelTalk Talk(Format, { Streams("{" + Usage + "," + WholeReply(Format, "Fine.").substr(1)) });
			Talk.Context.Config.Prices = { 1, 1, 1 };
			EXPECT_EQ(ModelTalk::TextOf(Talk.Send("Do it.")), "Fine.");
			EXPECT_GT(Talk.Runner->GetUsed().Tokens, 0);
			EXPECT_GT(Talk.Runner->GetUsed().Cost, 0);
		}
	}
	EXPECT_GT(ModelConsumption::Of({ 1, 1000, 0 }, 0, { 2, 1, 3 }).Cost, 0) << "more cached than read";
}
