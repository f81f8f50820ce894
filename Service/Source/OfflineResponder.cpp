#include "OfflineResponder.h"

#include "BlueprintChange.h"
#include "PlainRequest.h"
#include "ResultText.h"

#include <algorithm>
#include <map>

namespace
{
const char* const Help = "I work without a model here and understand a few requests in plain words:\n"
						 "  - read Source/Harrier/Harrier.h\n"
						 "  - show lines 10-20 of Config/DefaultGame.ini\n"
						 "  - list the files in Source\n"
						 "  - find Health\n"
						 "  - create Docs/Plan.md with \"First line\\nSecond line\"\n"
						 "  - replace \"300.0f\" with \"350.0f\" in Source/Harrier/Player/HarrierCharacter.h\n"
						 "  - insert \"; a remark\" at line 1 of Config/DefaultGame.ini\n"
						 "  - delete Docs/Plan.md\n"
						 "  - compile\n"
						 "  - read blueprint BP_Warden (or: show the variables of blueprint BP_Warden)\n"
						 "  - create blueprint BP_Gate from Actor in /Game/Doors, save all\n"
						 "  - add an int variable Health to BP_Gate with value 100\n"
						 "  - add function Heal with input Amount int and output Done bool to BP_Gate\n"
						 "  - add a print node to function Heal of BP_Gate saying \"Healed\"\n"
						 "  - read behavior tree BT_Warden\n"
						 "  - run python: import unreal; unreal.log(unreal.Paths.project_dir())\n"
						 "  - finish";

const char* const CompileGoesOn = "The game is being built in the background. Its result reaches me with your next "
								  "message (\"go on\").";

/** How a request becomes the use of a tool. */
struct ToolUse
{
	PlainRequest::Kind What;
	const char* Tool;
	/** What is announced; "%p" is the path, "%t" the text, "%m" the member. */
	const char* Announcement;
	Json (*Input)(const PlainRequest&);
};

Json ReadInput(const PlainRequest& Request)
{
	Json Input = { { "path", Request.Path } };
	if (Request.FirstLine)
	{
		Input["view_range"] = { *Request.FirstLine, Request.LastLine.value_or(-1) };
	}
	return Input;
}

Json InsertInput(const PlainRequest& Request)
{
	// The tool counts the lines that stay above.
	const int LinesAbove = std::max(Request.FirstLine.value_or(1) - 1, 0);
	return { { "path", Request.Path }, { "insert_line", std::to_string(LinesAbove) }, { "new_string", Request.Text } };
}

const ToolUse ToolUses[] = {
	{ PlainRequest::Kind::ReadFile, "read_file", "read %p", ReadInput },
	{ PlainRequest::Kind::ListFolder, "get_filesystem_tree", "list %p",
		[](const PlainRequest& Request) -> Json {
			return { { "dir_path", Request.Path } };
		} },
	{ PlainRequest::Kind::CreateFile, "create_file", "create %p",
		[](const PlainRequest& Request) -> Json {
			return { { "path", Request.Path }, { "file_text", Request.Text } };
		} },
	{ PlainRequest::Kind::ReplaceText, "update_file", "edit %p",
		[](const PlainRequest& Request) -> Json {
			return { { "path", Request.Path }, { "old_string", Request.OldText }, { "new_string", Request.Text } };
		} },
	{ PlainRequest::Kind::InsertLine, "insert_into_file", "insert a line into %p", InsertInput },
	{ PlainRequest::Kind::DeleteFile, "delete_file", "delete %p",
		[](const PlainRequest& Request) -> Json {
			return { { "path", Request.Path } };
		} },
	{ PlainRequest::Kind::RunPython, "execute_unreal_engine_api_python_script", "run a Python script",
		[](const PlainRequest& Request) -> Json {
			return { { "code", Request.Text } };
		} },
	{ PlainRequest::Kind::Compile, "compile", "build the game", [](const PlainRequest&) { return Json::object(); } },
	{ PlainRequest::Kind::FindText, "find_reference_in_all_files", "search the project for \"%t\"",
		[](const PlainRequest& Request) -> Json {
			return { { "reference_string", Request.Text } };
		} },
	{ PlainRequest::Kind::ReadBlueprint, "read_blueprint", "read the Blueprint %p",
		[](const PlainRequest& Request) -> Json {
			return { { "blueprint_name", Request.Path }, { "data_subset", Request.Text } };
		} },
	{ PlainRequest::Kind::CreateBlueprint, "create_blueprint", "create the Blueprint %p",
		[](const PlainRequest& Request) -> Json {
			return { { "BPPath", Request.Text }, { "BPName", Request.Path }, { "BPParentClassName", Request.OldText } };
		} },
	{ PlainRequest::Kind::SaveBlueprints, "save_and_compile_all_dirty_blueprints",
		"save and compile every changed Blueprint", [](const PlainRequest&) { return Json::object(); } },
	{ PlainRequest::Kind::ReadBehaviorTree, "read_behavior_tree", "read the behavior tree %p",
		[](const PlainRequest& Request) -> Json {
			return { { "behavior_tree_name", Request.Path } };
		} },
	{ PlainRequest::Kind::AddVariable, "modify_blueprint_variables", "add the variable %m", MakeBlueprintChange },
	{ PlainRequest::Kind::AddFunction, "modify_blueprint_variables", "add the function %m", MakeBlueprintChange },
	{ PlainRequest::Kind::AddPrintNode, "read_blueprint", "look at the functions of %p",
		[](const PlainRequest& Request) -> Json {
			return { { "blueprint_name", Request.Path }, { "data_subset", "Functions" } };
		} },
	{ PlainRequest::Kind::PlacePrintNode, "modify_blueprint_variables", "add the node to %m", MakeBlueprintChange },
	{ PlainRequest::Kind::Finish, "finish", "finish", [](const PlainRequest&) { return Json::object(); } },
};

const ToolUse& ToolUseOf(const PlainRequest& Request)
{
	return *std::find_if(std::begin(ToolUses), std::end(ToolUses),
		[&Request](const ToolUse& Each) { return Each.What == Request.What; });
}

std::string Announce(const PlainRequest& Request)
{
	std::string Text = ToolUseOf(Request).Announcement;
	const size_t Place = Text.find('%');
	if (Place != std::string::npos)
	{
		const std::string Path = Request.Path.empty() ? "the project" : Request.Path;
		const char Kind = Text[Place + 1];
		Text.replace(Place, 2, Kind == 'p' ? Path : Kind == 'm' ? Request.Member : Request.Text);
	}
	return Text;
}

std::string Announce(const std::vector<PlainRequest>& Requests)
{
	std::string Text;
	for (const PlainRequest& Request : Requests)
	{
		Text += (Text.empty() ? "I will " : ", then ") + Announce(Request);
	}
	return Text + ".";
}

class OfflineConversation : public Conversation
{
public:
	explicit OfflineConversation(bool bInConfirmationMode)
		: bConfirmationMode(bInConfirmationMode)
	{
	}

	Answer Respond(const Turn& UserTurn) override
	{
		const bool bHasResults = UserTurn.ToolResults.is_array() && !UserTurn.ToolResults.empty();
		const std::string Summary = bHasResults ? SumUp(UserTurn.ToolResults) : "";
		std::vector<PlainRequest> Requests = std::move(FollowUps);
		FollowUps.clear();
		const std::vector<PlainRequest> New = UnderstandPlainRequests(UserTurn.Message);
		Requests.insert(Requests.end(), New.begin(), New.end());
		if (!Requests.empty())
		{
			return AskForTools(Requests, Summary);
		}
		if (bHasResults)
		{
			return Say(Summary);
		}
		if (!UserTurn.Message.empty())
		{
			return Say(Help);
		}
		return Say(IsCompiling() ? CompileGoesOn : "What should I do?");
	}

private:
	Answer Say(const std::string& Text) const
	{
		// Nothing to approve: without this the client would ask its user all the same.
		return Answer::Completed(
			{ { "response", Json::array({ { { "type", "text" }, { "text", Text } } }) }, { "auto_continue", true } });
	}

	/** @param Before  what is said first: how earlier tools went */
	Answer AskForTools(const std::vector<PlainRequest>& Requests, const std::string& Before)
	{
		Json Blocks = Json::array();
		const std::string Text = Before + (Before.empty() ? "" : "\n\n") + Announce(Requests);
		Blocks.push_back({ { "type", "text" }, { "text", Text } });
		for (const PlainRequest& Request : Requests)
		{
			const std::string Id = "tool-" + std::to_string(++NumTools);
			Asked[Id] = Request;
			const ToolUse& Use = ToolUseOf(Request);
			Blocks.push_back(
				{ { "type", "tool_use" }, { "id", Id }, { "name", Use.Tool }, { "input", Use.Input(Request) } });
		}
		return Answer::Completed({ { "response", Blocks }, { "auto_continue", !bConfirmationMode } });
	}

	/** Whether a result is still to come after the others. */
	bool IsCompiling() const
	{
		return std::any_of(Asked.begin(), Asked.end(),
			[](const auto& Each) { return Each.second.What == PlainRequest::Kind::Compile; });
	}

	std::string SumUp(const Json& Results)
	{
		std::string Text;
		for (const Json& Result : Results)
		{
			const std::string Description = Describe(Result);
			Text += (Text.empty() || Description.empty() ? "" : "\n\n") + Description;
		}
		return Text;
	}

	std::string Describe(const Json& Result)
	{
		const std::string Id = Result.contains("tool_use_id") && Result["tool_use_id"].is_string()
								   ? Result["tool_use_id"].get<std::string>()
								   : "";
		const auto Found = Asked.find(Id);
		if (Found == Asked.end())
		{
			// The client compiles by itself after an undo.
			return Id == "Undo" || Id == "Redo"
					   ? "After the " + Id + ": " +
							 DescribeResult({ PlainRequest::Kind::Compile, "", {}, {}, "", "" }, Result)
					   : "I got a result that I had not asked for.";
		}
		const PlainRequest Request = Found->second;
		Asked.erase(Found);
		const bool bWorked = !Result.value("is_error", false) && !Result.value("is_abort", false);
		return bWorked && Request.What == PlainRequest::Kind::AddPrintNode ? PlaceNode(Request, Result)
																		   : DescribeResult(Request, Result);
	}

	/** What was read tells where the node can stand; adding it comes next. @return what keeps it from being added */
	std::string PlaceNode(const PlainRequest& Request, const Json& Result)
	{
		std::string Problem;
		if (const std::optional<PlainRequest> Placed = PlacePrintNode(Request, Result.value("content", ""), Problem))
		{
			FollowUps.push_back(*Placed);
		}
		return Problem;
	}

	const bool bConfirmationMode;
	std::vector<PlainRequest> FollowUps;
	std::map<std::string, PlainRequest> Asked; // by the ids of the tool uses whose results have not come yet
	int NumTools = 0;
};
}

std::unique_ptr<Conversation> OfflineResponder::Begin(const Turn& FirstTurn) const
{
	return std::make_unique<OfflineConversation>(FirstTurn.bConfirmationMode);
}
