#include "CommandBody.h"

#include <gtest/gtest.h>

TEST(CommandBodyTest, ReadsEveryMember)
{
	const auto Initial =
		ParseCommandBody(R"({"message":"hi","file_structure":{"a.h":"#"},"is_confirmation_mode":false})");
	ASSERT_TRUE(Initial);
	EXPECT_EQ(Initial->Message, "hi");
	EXPECT_EQ(Initial->FileStructure["a.h"], "#");
	EXPECT_FALSE(Initial->bConfirmationMode);
	EXPECT_FALSE(Initial->WasConfirmed.has_value());
	const auto Results = ParseCommandBody(R"({"tool_results":[{"content":"x"}],"was_confirmed":true})");
	ASSERT_TRUE(Results);
	EXPECT_EQ(Results->ToolResults.size(), 1u);
	EXPECT_TRUE(*Results->WasConfirmed);
}

TEST(CommandBodyTest, UnderstandsMessagesThatWereNotEscaped)
{
	struct FCase
	{
		const char* Body;
		const char* Message;
		size_t NumResults;
	};
	const FCase Cases[] = {
		{ "{\"message\": \"say \"hello\"\nnow\"}", "say \"hello\"\nnow", 0 },
		{ "{\"tool_results\": [\n\t{\"content\": \"a, \\\"message\\\": \\\"b\"}\n], \"message\": \"read \"A.h\"\"}",
			"read \"A.h\"", 1 },
		{ "{\"message\": \"a\\path\"}", "a\\path", 0 },
	};
	for (const FCase& Case : Cases)
	{
		const auto Parsed = ParseCommandBody(Case.Body);
		ASSERT_TRUE(Parsed) << Case.Body;
		EXPECT_EQ(Parsed->Message, Case.Message);
		EXPECT_EQ(Parsed->ToolResults.size(), Case.NumResults);
	}
}

TEST(CommandBodyTest, RefusesWhatIsNoCommand)
{
	for (const char* Body :
		{ "", "[]", "5", "hello", "{\"message\": \"", "{\"tool_results\": x, \"message\": \"y\"}", "<html>" })
	{
		EXPECT_FALSE(ParseCommandBody(Body)) << Body;
	}
	EXPECT_TRUE(ParseCommandBody("{\"message\":5}")->Message.empty());
}
