#include "OfflineResponder.h"

#include <gtest/gtest.h>

namespace
{
class OfflineResponderTest : public testing::Test
{
protected:
	std::unique_ptr<Conversation> Talk = OfflineResponder().Begin({});

	Json Respond(const Turn& UserTurn)
	{
		return Json::parse(Talk->Respond(UserTurn).StatusReplies.back().Body)["response"]["response"];
	}

	Json Ask(const std::string& Message)
	{
		Turn UserTurn;
		UserTurn.Message = Message;
		return Respond(UserTurn);
	}

	std::string Report(const Json& Result)
	{
		Turn UserTurn;
		UserTurn.ToolResults = Json::array({ Result });
		return Respond(UserTurn).back()["text"];
	}
};
}

TEST_F(OfflineResponderTest, AsksForTheToolsAndSumsUpWhatTheyFound)
{
	const Json Blocks = Ask("read lines 2-3 of Source/A.h");
	ASSERT_EQ(Blocks.size(), 2u);
	EXPECT_EQ(Blocks[0]["type"], "text");
	EXPECT_EQ(Blocks[1]["name"], "read_file");
	EXPECT_EQ(Blocks[1]["input"].dump(), R"({"path":"Source/A.h","view_range":[2,3]})");
	const std::string Text =
		Report({ { "tool_use_id", Blocks[1]["id"] }, { "content", "two\nthree" }, { "is_error", false } });
	EXPECT_EQ(Text, "From Source/A.h, 2 lines:\n\ntwo\nthree");
}

TEST_F(OfflineResponderTest, TellsOfErrorsAbortsAndStrangeResults)
{
	const std::string Id = Ask("read A.h").back()["id"];
	EXPECT_EQ(Report({ { "tool_use_id", Id }, { "content", "Error: File not found" }, { "is_error", true } }),
		"That did not work for A.h: Error: File not found");
	const std::string Other = Ask("read A.h").back()["id"];
	EXPECT_EQ(Report({ { "tool_use_id", Other }, { "content", "Abort" }, { "is_abort", true } }),
		"You stopped me before I could use a tool.");
	EXPECT_EQ(Report("nonsense"), "I got a result that I had not asked for.");
}

TEST_F(OfflineResponderTest, AnswersAMessageThatComesInPlaceOfAnApproval)
{
	const std::string Id = Ask("read A.h").back()["id"];
	Turn Instead;
	Instead.ToolResults = Json::array({ { { "tool_use_id", Id }, { "content", "Abort" }, { "is_abort", true } } });
	Instead.Message = "read B.h";
	EXPECT_EQ(Respond(Instead).back()["input"]["path"], "B.h");
}

TEST_F(OfflineResponderTest, GivesEachToolItsInput)
{
	const struct
	{
		const char* Message;
		const char* Tool;
		const char* Input;
	} Cases[] = {
		{ "create A.md with x", "create_file", R"({"path":"A.md","file_text":"x"})" },
		{ "replace a with b in A.md", "update_file", R"({"path":"A.md","old_string":"a","new_string":"b"})" },
		{ "insert x at line 3 of A.md", "insert_into_file", R"({"path":"A.md","insert_line":"2","new_string":"x"})" },
		{ "delete A.md", "delete_file", R"({"path":"A.md"})" },
		{ "find x", "find_reference_in_all_files", R"({"reference_string":"x"})" },
		{ "run python: x", "execute_unreal_engine_api_python_script", R"({"code":"x"})" },
		{ "compile", "compile", "{}" },
		{ "read blueprint BP_A", "read_blueprint", R"({"blueprint_name":"BP_A","data_subset":"All"})" },
		{ "create a blueprint called BP_A from Pawn in /Game/B", "create_blueprint",
			R"({"BPPath":"/Game/B","BPName":"BP_A","BPParentClassName":"Pawn"})" },
		{ "save all", "save_and_compile_all_dirty_blueprints", "{}" },
		{ "read behavior tree BT_A", "read_behavior_tree", R"({"behavior_tree_name":"BT_A"})" },
		{ "add a vector variable Place to BP_A", "modify_blueprint_variables",
			R"({"blueprint_name":"BP_A","updates":"{\"Variables\":{\"Place\":{\"Type\":{\"Category\":\"struct\",)"
			R"(\"SubCategoryObject\":\"/Script/CoreUObject.Vector\"}}}}"})" },
		{ "add function F with input A int[] and output B actor to BP_A", "modify_blueprint_variables",
			R"({"blueprint_name":"BP_A","updates":"{\"Functions\":[{\"Name\":\"F\",\"InParams\":[{\"Type\":)"
			R"(\"ArrayProperty\",\"InnerType\":{\"Type\":\"IntProperty\"},\"Name\":\"A\"}],\"OutParams\":[{\"Type\":)"
			R"(\"ObjectProperty\",\"PropertyClass\":\"/Script/Engine.Actor\",\"Name\":\"B\"}]}]}"})" },
	};
	for (const auto& Case : Cases)
	{
		const Json Block = Ask(Case.Message).back();
		EXPECT_EQ(Block["name"], Case.Tool);
		EXPECT_EQ(Block["input"].dump(), Case.Input);
	}
}

TEST_F(OfflineResponderTest, SumsUpABlueprintWithTheTypesOfMapsAndResults)
{
	const std::string Id = Ask("read blueprint BP_A").back()["id"];
	const char* const Document =
		R"({"Name":"BP_A","Path":"/Game/BP_A.BP_A","Variables":{"Toll":{"Type":{"Category":"name","Container":"Map",)"
		R"("ValueType":{"Category":"int"}},"Value":""}},"Functions":[{"Name":"Open","ReturnType":"void"},)"
		R"({"Name":"Ask","ReturnType":{"Name":"ReturnValue","Type":{"Category":"bool","Container":"None"}},)"
		R"("OutParams":[{"Name":"Who","Type":{"Category":"object","SubCategoryObject":"/Script/Engine.Actor"}}]}]})";
	EXPECT_EQ(Report({ { "tool_use_id", Id }, { "content", Document } }),
		"The Blueprint BP_A (/Game/BP_A.BP_A):\n\nVariables (1):\n  - Toll: Map of name to int\n"
		"Functions (2):\n  - Open()\n  - Ask() -> bool, Who: Actor\n");
}

TEST_F(OfflineResponderTest, PutsANodeBehindTheLastOneOfAFunction)
{
	const auto Describe = [](const std::string& Nodes) {
		return R"({"Functions":[{"Name":"Heal","EdGraph":{"Nodes":[{"Title":"Heal","Class":"K2Node_FunctionEntry","Pins":)"
			   R"([{"Name":"then","Connections":[)" +
			   Nodes + "]}}]}";
	};
	const auto Place = [this](const std::string& Document) {
		const std::string Id = Ask("add a print node to function heal of BP_A saying Hi").back()["id"];
		Turn Results;
		Results.ToolResults = Json::array({ { { "tool_use_id", Id }, { "content", Document } } });
		return Respond(Results).back();
	};
	const Json First = Place(Describe("]}]}"));
	EXPECT_EQ(First["name"], "modify_blueprint_variables");
	EXPECT_NE(First["input"]["updates"].get<std::string>().find(R"("Node":"Heal","Pin":"then")"), std::string::npos);
	const std::string Print = R"(,{"Title":"Print String","Pins":[{"Name":"then","Connections":[]}]})";
	const std::string Linked = R"({"Node":"Print String","Pin":"execute"}]}]})";
	const Json Second = Place(Describe(Linked + Print));
	EXPECT_NE(Second["input"]["updates"].get<std::string>().find(R"("Node":"Print String")"), std::string::npos);
	const Json Ambiguous = Place(Describe(Linked + Print + Print));
	EXPECT_NE(Ambiguous["text"].get<std::string>().find("more than one node"), std::string::npos);
	EXPECT_NE(Place("{}")["text"].get<std::string>().find("no function"), std::string::npos);
}

TEST_F(OfflineResponderTest, TellsOfABuildWhoseResultComesLater)
{
	const std::string Id = Ask("compile").back()["id"];
	EXPECT_NE(Ask("")[0]["text"].get<std::string>().find("in the background"), std::string::npos);
	Turn Next;
	Next.Message = "read A.h";
	Next.ToolResults = Json::array({ { { "tool_use_id", Id }, { "is_error", true },
		{ "content", "[LogCompile] [1/2] Compile A.cpp\n[LogCompile] A.cpp:3:5: error: no\n[LogCompile] done" } } });
	const Json Blocks = Respond(Next);
	EXPECT_EQ(Blocks[0]["text"], "The build failed:\n\n[LogCompile] A.cpp:3:5: error: no\n\n\nI will read A.h.");
	EXPECT_EQ(Blocks[1]["name"], "read_file");
	EXPECT_EQ(Ask("")[0]["text"], "What should I do?") << "the result has come";
}

TEST_F(OfflineResponderTest, SumsUpScriptsAndSearches)
{
	const std::string Script = Ask("run python: x").back()["id"];
	EXPECT_EQ(Report({ { "tool_use_id", Script }, { "content", "Python script completed: \n7\n: " } }),
		"The script ran and printed:\n\n7\n");
	const std::string Search = Ask("find Health").back()["id"];
	EXPECT_EQ(Report({ { "tool_use_id", Search },
				  { "content", R"({"reference_string":"Health","cpp_references":[{"Path":"/p/A.h"}]})" } }),
		"\"Health\" is in 1 source file:\n  /p/A.h");
	const std::string Assets = Ask("find Health").back()["id"];
	EXPECT_EQ(Report({ { "tool_use_id", Assets },
				  { "content", R"({"cpp_references":[],"blueprint_references":[{"Type":"Variable","Name":"Health",)"
							   R"("Blueprint":"BP_A"},{"Type":"Blueprint File","Blueprint":"BP_Health"}]})" } }),
		"No source file has \"Health\" in it.\n\nIt is in 2 Blueprints:\n  BP_A:\n    Variable Health\n  BP_Health:\n"
		"    Blueprint File");
	const std::string Partly = Ask("find Health").back()["id"];
	EXPECT_EQ(Report({ { "tool_use_id", Partly },
				  { "content", R"({"cpp_references":[],"cpp_files_not_searched":["/p/Dump.h"],)"
							   R"("cpp_not_searched":{"count":2,"reason":"r","paths":["/q/A.h","/q/B.h"]},)"
							   R"("blueprints_not_searched":{"count":1,"paths":[7]}})" } }),
		"No source file has \"Health\" in it.\n\nNot searched, since reading them needs your approval:\n  /q/A.h\n"
		"  /q/B.h\n\nNot searched, since they are too large:\n  /p/Dump.h");
}

TEST_F(OfflineResponderTest, ListsFoldersAndCutsWhatIsLong)
{
	const std::string Id = Ask("list the files in Source").back()["id"];
	EXPECT_EQ(Report({ { "tool_use_id", Id }, { "content", R"({"A.h":"#","Game":{"B.h":"#"}})" } }),
		"Source has 2 files in 1 folder.\n  A.h\n  Game/\n    B.h\n");
	const std::string Long = Ask("read Long.txt").back()["id"];
	std::string Content;
	for (int Line = 0; Line < 1000; ++Line)
	{
		Content += "line\n";
	}
	const std::string Text = Report({ { "tool_use_id", Long }, { "content", Content } });
	EXPECT_NE(Text.find("1000 lines"), std::string::npos);
	EXPECT_LT(Text.size(), 500u);
	const std::string Wide = Ask("read Wide.txt").back()["id"];
	std::string Euros;
	for (int Count = 0; Count < 3000; ++Count)
	{
		Euros += "\u20ac";
	}
	EXPECT_NO_THROW(Report({ { "tool_use_id", Wide }, { "content", Euros } })) << "cut within a character";
}

TEST_F(OfflineResponderTest, SaysWhatItCanDoWhenItDoesNotUnderstand)
{
	const Json Blocks = Ask("make me a coffee");
	ASSERT_EQ(Blocks.size(), 1u);
	EXPECT_NE(Blocks[0]["text"].get<std::string>().find("read Source"), std::string::npos);
}
