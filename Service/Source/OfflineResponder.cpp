#include "OfflineResponder.h"

#include "PlainRequest.h"

#include <algorithm>
#include <map>

namespace
{
const char* const Help = "I work without a model here and understand a few requests in plain words:\n"
						 "  - read Source/Harrier/Harrier.h\n"
						 "  - show lines 10-20 of Config/DefaultGame.ini\n"
						 "  - list the files in Source\n"
						 "  - finish";

/** Of a file's text at most this much is repeated in a summary. */
constexpr size_t MaxQuotedLines = 40;
constexpr size_t MaxQuotedBytes = 4000;

struct Quote
{
	std::string Text;
	size_t NumLines = 0;
	bool bCut = false;
};

/** The beginning of a text, cut at a line's end (or, in a very long line, at a character's). */
Quote QuoteBeginning(const std::string& Text)
{
	Quote Result;
	Result.NumLines =
		static_cast<size_t>(std::count(Text.begin(), Text.end(), '\n')) + (Text.empty() || Text.back() == '\n' ? 0 : 1);
	size_t End = 0;
	for (size_t Line = 0; Line < MaxQuotedLines && End < Text.size(); ++Line)
	{
		const size_t Break = Text.find('\n', End);
		const size_t Next = Break == std::string::npos ? Text.size() : Break + 1;
		if (Next > MaxQuotedBytes)
		{
			break;
		}
		End = Next;
	}
	if (End == 0)
	{
		End = std::min(Text.size(), MaxQuotedBytes);
		while (End > 0 && End < Text.size() && (static_cast<unsigned char>(Text[End]) & 0xC0) == 0x80)
		{
			--End;
		}
	}
	Result.Text = Text.substr(0, End);
	Result.bCut = End < Text.size();
	return Result;
}

std::string Counted(size_t Count, const std::string& Thing)
{
	return std::to_string(Count) + " " + Thing + (Count == 1 ? "" : "s");
}

struct TreeCount
{
	size_t Files = 0;
	size_t Folders = 0;
};

void ListTree(const Json& Tree, const std::string& Indent, std::string& Out, TreeCount& Count)
{
	for (const auto& [Name, Value] : Tree.items())
	{
		const bool bFolder = Value.is_object();
		bFolder ? ++Count.Folders : ++Count.Files;
		if (Count.Files + Count.Folders <= MaxQuotedLines)
		{
			Out += Indent + Name + (bFolder ? "/\n" : "\n");
		}
		if (bFolder)
		{
			ListTree(Value, Indent + "  ", Out, Count);
		}
	}
}

std::string DescribeTree(const std::string& Path, const std::string& Content)
{
	const Json Tree = Json::parse(Content, nullptr, false);
	if (!Tree.is_object())
	{
		return Content;
	}
	if (Tree.empty())
	{
		return "I see no files there: either " + (Path.empty() ? std::string("the project") : Path) +
			   " has none of the kinds that I am shown, or there is no such folder.";
	}
	std::string Listing;
	TreeCount Count;
	ListTree(Tree, "  ", Listing, Count);
	const std::string Where = Path.empty() ? "The project" : Path;
	std::string Text =
		Where + " has " + Counted(Count.Files, "file") + " in " + Counted(Count.Folders, "folder") + ".\n" + Listing;
	if (Count.Files + Count.Folders > MaxQuotedLines)
	{
		Text += "  ... and " + std::to_string(Count.Files + Count.Folders - MaxQuotedLines) + " more";
	}
	return Text;
}

std::string DescribeFile(const PlainRequest& Request, const std::string& Content)
{
	const Quote Beginning = QuoteBeginning(Content);
	const std::string Kind = Request.FirstLine ? "From " + Request.Path + ", " : Request.Path + ", ";
	std::string Text = Kind + Counted(Beginning.NumLines, "line") + ":\n\n" + Beginning.Text;
	if (Beginning.bCut)
	{
		Text += "\n... (the rest is left out here)";
	}
	return Text;
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
		if (UserTurn.ToolResults.is_array() && !UserTurn.ToolResults.empty())
		{
			const bool bOnlyResults = UserTurn.Message.empty();
			const std::string Summary = SumUp(UserTurn.ToolResults);
			Asked.clear();
			if (bOnlyResults || UnderstandPlainRequests(UserTurn.Message).empty())
			{
				return Say(Summary);
			}
		}
		return Plan(UserTurn);
	}

private:
	Answer Say(const std::string& Text) const
	{
		// Nothing to approve: without this the client would ask its user all the same.
		return Answer::Completed(
			{ { "response", Json::array({ { { "type", "text" }, { "text", Text } } }) }, { "auto_continue", true } });
	}

	Answer Plan(const Turn& UserTurn)
	{
		const std::vector<PlainRequest> Requests = UnderstandPlainRequests(UserTurn.Message);
		if (Requests.empty())
		{
			return Say(UserTurn.Message.empty() ? "What should I do?" : Help);
		}
		Json Blocks = Json::array();
		Blocks.push_back({ { "type", "text" }, { "text", Announce(Requests) } });
		for (const PlainRequest& Request : Requests)
		{
			const std::string Id = "tool-" + std::to_string(++NumTools);
			Asked[Id] = Request;
			Blocks.push_back({ { "type", "tool_use" }, { "id", Id }, { "name", ToolName(Request) },
				{ "input", ToolInput(Request) } });
		}
		return Answer::Completed({ { "response", Blocks }, { "auto_continue", !bConfirmationMode } });
	}

	static std::string Announce(const std::vector<PlainRequest>& Requests)
	{
		std::string Text;
		for (const PlainRequest& Request : Requests)
		{
			Text += Text.empty() ? "I will " : ", then ";
			switch (Request.What)
			{
			case PlainRequest::Kind::ReadFile:
				Text += "read " + Request.Path;
				break;
			case PlainRequest::Kind::ListFolder:
				Text += "list " + (Request.Path.empty() ? std::string("the project") : Request.Path);
				break;
			case PlainRequest::Kind::Finish:
				Text += "finish";
				break;
			}
		}
		return Text + ".";
	}

	static const char* ToolName(const PlainRequest& Request)
	{
		switch (Request.What)
		{
		case PlainRequest::Kind::ReadFile:
			return "read_file";
		case PlainRequest::Kind::ListFolder:
			return "get_filesystem_tree";
		case PlainRequest::Kind::Finish:
			break;
		}
		return "finish";
	}

	static Json ToolInput(const PlainRequest& Request)
	{
		Json Input = Json::object();
		if (Request.What == PlainRequest::Kind::ReadFile)
		{
			Input["path"] = Request.Path;
			if (Request.FirstLine)
			{
				Input["view_range"] = { *Request.FirstLine, Request.LastLine.value_or(-1) };
			}
		}
		else if (Request.What == PlainRequest::Kind::ListFolder)
		{
			Input["dir_path"] = Request.Path;
		}
		return Input;
	}

	std::string SumUp(const Json& Results) const
	{
		std::string Text;
		for (const Json& Result : Results)
		{
			Text += (Text.empty() ? "" : "\n\n") + Describe(Result);
		}
		return Text;
	}

	std::string Describe(const Json& Result) const
	{
		const auto GetString = [&Result](const char* Name) {
			return Result.contains(Name) && Result[Name].is_string() ? Result[Name].get<std::string>() : std::string();
		};
		const auto Found = Asked.find(GetString("tool_use_id"));
		const std::string Content = GetString("content");
		if (Found == Asked.end())
		{
			return "I got a result that I had not asked for.";
		}
		if (Result.value("is_abort", false))
		{
			return "You stopped me before I could use a tool.";
		}
		if (Result.value("is_error", false))
		{
			return "That did not work for " + (Found->second.Path.empty() ? "the project" : Found->second.Path) + ": " +
				   Content;
		}
		switch (Found->second.What)
		{
		case PlainRequest::Kind::ReadFile:
			return DescribeFile(Found->second, Content);
		case PlainRequest::Kind::ListFolder:
			return DescribeTree(Found->second.Path, Content);
		case PlainRequest::Kind::Finish:
			break;
		}
		return "Done.";
	}

	const bool bConfirmationMode;
	std::map<std::string, PlainRequest> Asked; // by the ids of the tool uses
	int NumTools = 0;
};
}

std::unique_ptr<Conversation> OfflineResponder::Begin(const Turn& FirstTurn) const
{
	return std::make_unique<OfflineConversation>(FirstTurn.bConfirmationMode);
}
