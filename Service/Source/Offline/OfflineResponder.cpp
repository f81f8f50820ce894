#include "OfflineResponder.h"

#include "BlueprintChange.h"
#include "JsonFields.h"
#include "RequestParser.h"
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

std::string Announce(const std::vector<PlainRequest>& Requests)
{
	std::string Text;
	for (const PlainRequest& Request : Requests)
	{
		Text += (Text.empty() ? "I will " : ", then ") +
				std::visit([](const auto& Kind) { return Kind.Announcement(); }, Request);
	}
	return Text + ".";
}

Json MakeToolUse(const std::string& Id, const PlainRequest& Request)
{
	return std::visit(
		[&Id](const auto& Kind) -> Json {
			return { { "type", "tool_use" }, { "id", Id }, { "name", Kind.Tool }, { "input", Kind.Input() } };
		},
		Request);
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
		const std::vector<PlainRequest> New = ParsePlainRequests(UserTurn.Message);
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
			Blocks.push_back(MakeToolUse(Id, Request));
		}
		return Answer::Completed({ { "response", Blocks }, { "auto_continue", !bConfirmationMode } });
	}

	/** Whether a result is still to come after the others. */
	bool IsCompiling() const
	{
		return std::any_of(Asked.begin(), Asked.end(),
			[](const auto& Each) { return std::holds_alternative<Plain::Compile>(Each.second); });
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
		const std::string Id = GetText(Result, "tool_use_id");
		const auto Found = Asked.find(Id);
		if (Found == Asked.end())
		{
			// The client compiles by itself after an undo.
			return Id == "Undo" || Id == "Redo" ? "After the " + Id + ": " + DescribeResult(Plain::Compile{}, Result)
												: "I got a result that I had not asked for.";
		}
		const PlainRequest Request = Found->second;
		Asked.erase(Found);
		const bool bWorked = !Result.value("is_error", false) && !Result.value("is_abort", false);
		const Plain::AddPrintNode* const Node = std::get_if<Plain::AddPrintNode>(&Request);
		return bWorked && Node ? PlaceNode(*Node, Result) : DescribeResult(Request, Result);
	}

	/** What was read tells where the node can stand; adding it comes next. @return what keeps it from being added */
	std::string PlaceNode(const Plain::AddPrintNode& Request, const Json& Result)
	{
		std::string Problem;
		if (const std::optional<Plain::PlacePrintNode> Placed =
				FindPlace(Request, Result.value("content", ""), Problem))
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
