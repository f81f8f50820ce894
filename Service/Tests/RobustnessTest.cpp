#include "CommandBody.h"
#include "MutateText.h"
#include "RequestParser.h"

#include <gtest/gtest.h>

TEST(ServiceRobustnessTest, AMutatedBodyIsACommandOrRefused)
{
	const std::string Seeds[] = {
		R"({"message": "say "hello" now", "message": ""})",
		R"({"tool_results": [{"content":"a, \"message\": \"b"}], "message": "read "A.h""})",
		R"({"message":"hi","file_structure":{"a.h":"#"},"is_confirmation_mode":false,"was_confirmed":null})",
	};
	FTextMutator Mutator("{}[]\",:\\ truefalsn0\n\xc3\xa9\xff");
	size_t NumUnderstood = 0;
	for (int Round = 0; Round < 20000; ++Round)
	{
		const std::string Body = Mutator.Mutate(Seeds[Round % 3]);
		const std::optional<Turn> Parsed = ParseCommandBody(Body);
		if (!Parsed)
		{
			continue;
		}
		++NumUnderstood;
		ASSERT_LE(Parsed->Message.size(), Body.size()) << Body;
		ASSERT_TRUE(Parsed->FileStructure.is_null() || Parsed->FileStructure.is_object()) << Body;
		ASSERT_TRUE(Parsed->ToolResults.is_null() || Parsed->ToolResults.is_array()) << Body;
	}
	EXPECT_GT(NumUnderstood, 5000u);
}

TEST(ServiceRobustnessTest, ADeeplyNestedBodyDoesNotOverflowTheStack)
{
	const size_t Depth = 1000000;
	const std::string Nested = std::string(Depth, '[') + std::string(Depth, ']');
	EXPECT_FALSE(ParseCommandBody("{\"tool_results\":" + Nested + "}"));
	EXPECT_FALSE(ParseCommandBody("{\"tool_results\": " + Nested + ", \"message\": \"not \"escaped\"\"}"));
	EXPECT_EQ(ParseCommandBody("{\"message\": \"" + Nested + "\"}")->Message, Nested) << "a text may hold anything";
}

TEST(ServiceRobustnessTest, AMutatedRequestNamesOnlyWhatWasWritten)
{
	const std::string Seeds[] = {
		"show me lines 5-12 of \"My Config/Default Game.ini\", please",
		"list the files in Source/Game",
		"read A.h, 'B c.h' and C.cpp lines 5 to 12",
	};
	FTextMutator Mutator(" \"'`,.:/-0123456789\n\xc3\xa9\xff\x80");
	size_t NumUnderstood = 0;
	for (int Round = 0; Round < 20000; ++Round)
	{
		const std::string Text = Mutator.Mutate(Seeds[Round % 3]);
		for (const PlainRequest& Request : ParsePlainRequests(Text))
		{
			++NumUnderstood;
			const std::string Subject = std::visit([](const auto& Kind) { return Kind.Subject(); }, Request);
			ASSERT_NE(Text.find(Subject), std::string::npos) << Text;
		}
	}
	EXPECT_GT(NumUnderstood, 5000u);
}
