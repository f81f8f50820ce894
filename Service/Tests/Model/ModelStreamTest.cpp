#include "EventStream.h"
#include "ModelTalk.h"
#include "MutateText.h"

#include <gtest/gtest.h>

namespace
{
const Json Said = { { "text", "Grüße € 🦅" },
	{ "calls", Json::array(
				   { MakeCall("a1", "read_file", { { "path", "Ä.h" } }), MakeCall("a2", "compile", Json::object()) }) },
	{ "usage", { { "input", 12 }, { "output", 34 } } } };

std::optional<ModelReply> Assemble(ModelFormat Format, const std::string& Stream, size_t Split)
{
	const std::unique_ptr<ReplyAssembler> Assembler = RequestFormat::Get(Format).MakeAssembler();
	EventStream Events;
	const auto OnEvent = [&](const std::string& Data) { Assembler->AddEvent(Data); };
	Events.Feed(std::string_view(Stream).substr(0, Split), OnEvent);
	Events.Feed(std::string_view(Stream).substr(Split), OnEvent);
	Events.End(OnEvent);
	return Assembler->Finish();
}
}

TEST(ModelStreamTest, AStreamReadsTheSameWhereverItIsSplit)
{
	for (const ModelFormat Format : BothFormats)
	{
		const std::string Stream = RenderStream(Format, Said);
		for (size_t Split = 0; Split <= Stream.size(); ++Split)
		{
			const std::optional<ModelReply> Reply = Assemble(Format, Stream, Split);
			ASSERT_TRUE(Reply) << NameOf(Format) << Split;
			ASSERT_EQ(Reply->Message.GetText(), "Grüße € 🦅");
			const std::vector<const ToolCall*> Calls = Reply->Message.GetCalls();
			ASSERT_EQ(Calls.size(), 2u);
			ASSERT_EQ(Calls[0]->Id + Calls[0]->Name + Calls[0]->Input.dump(), "a1read_file{\"path\":\"Ä.h\"}");
			ASSERT_EQ(Calls[1]->Name + Calls[1]->Input.dump(), "compile{}");
			ASSERT_EQ(Reply->Usage.Input, 12);
			ASSERT_EQ(Reply->Usage.Output, 34);
		}
	}
}

TEST(ModelStreamTest, LineEndingsCommentsAndOtherFieldsDoNotMatter)
{
	const std::pair<const char*, const char*> Cases[] = {
		{ "data: a\n\ndata:b\n\n", "a|b|" },
		{ "data: a\r\n\r\ndata: b\r\rdata: c\n\n", "a|b|c|" },
		{ ": comment\nevent: x\nid: 5\ndata: a\nretry: 1\n\n", "a|" },
		{ "data: a\ndata: b\n\n\n\n", "a\nb|" },
		{ "data: no end", "no end|" },
		{ "\n\n", "" },
	};
	for (const auto& [Stream, Expected] : Cases)
	{
		std::string Seen;
		EventStream Events;
		const auto OnEvent = [&Seen](const std::string& Data) { Seen += Data + "|"; };
		for (const char* At = Stream; *At; ++At)
		{
			Events.Feed({ At, 1 }, OnEvent);
		}
		Events.End(OnEvent);
		EXPECT_EQ(Seen, Expected) << Stream;
	}
	EventStream Endless;
	EXPECT_FALSE(Endless.Feed(std::string(EventStream::MaxEventBytes + 1, 'x'), [](const std::string&) {}));
}

TEST(ModelStreamTest, AMutatedStreamIsAReplyAFaultOrIncomplete)
{
	FTextMutator Mutator("{}[]\",:\\0-data: \n\xc3\xff");
	const std::string Streams[] = { RenderStream(BothFormats[0], Said), RenderStream(BothFormats[1], Said) };
	size_t NumReplies = 0;
	for (int Round = 0; Round < 4000; ++Round)
	{
		const ModelFormat Format = BothFormats[Round % 2];
		const std::string Stream = Mutator.Mutate(Streams[Round % 2]);
		if (const std::optional<ModelReply> Reply = Assemble(Format, Stream, Stream.size() / 2))
		{
			++NumReplies;
			ASSERT_LE(Reply->Message.GetCalls().size(), Stream.size());
			ASSERT_GE(Reply->Usage.Input, 0);
		}
	}
	EXPECT_GT(NumReplies, 400u);
}
