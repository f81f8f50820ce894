#include "ResultText.h"

#include "BlueprintText.h"

#include <algorithm>
#include <sstream>

namespace
{
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

/** The beginning of a text that is not a file's own. */
std::string Shorten(const std::string& Text)
{
	const Quote Beginning = QuoteBeginning(Text);
	return Beginning.Text + (Beginning.bCut ? "\n... (the rest is left out here)" : "");
}

std::string DescribeScript(const std::string& Content)
{
	// The tool puts a heading before the output and an empty error behind it.
	const std::string Heading = "Python script completed: \n";
	const std::string NoError = ": ";
	std::string Output = Content.rfind(Heading, 0) == 0 ? Content.substr(Heading.size()) : Content;
	if (Output.size() >= NoError.size() && Output.compare(Output.size() - NoError.size(), NoError.size(), NoError) == 0)
	{
		Output.resize(Output.size() - NoError.size());
	}
	return Output.empty() ? "The script ran and printed nothing." : "The script ran and printed:\n\n" + Shorten(Output);
}

std::string DescribeFiles(const PlainRequest& Request, const Json& Files)
{
	if (Files.empty())
	{
		return "No source file has \"" + Request.Text + "\" in it.";
	}
	std::string Text = "\"" + Request.Text + "\" is in " + Counted(Files.size(), "source file") + ":";
	for (size_t Index = 0; Index < std::min(Files.size(), MaxQuotedLines); ++Index)
	{
		Text += "\n  " + Files[Index].value("Path", "");
	}
	return Text + (Files.size() > MaxQuotedLines ? "\n  ... and more" : "");
}

std::string DescribeReferences(const PlainRequest& Request, const std::string& Content)
{
	const Json Found = Json::parse(Content, nullptr, false);
	if (!Found.is_object() || !Found.contains("cpp_references") || !Found["cpp_references"].is_array())
	{
		return Content;
	}
	const std::string Blueprints =
		DescribeBlueprintReferences(Found.value("blueprint_references", Json::array()), MaxQuotedLines);
	return DescribeFiles(Request, Found["cpp_references"]) + (Blueprints.empty() ? "" : "\n\n" + Blueprints);
}

/** The lines of a failed build that say why, or all of them. */
std::string DescribeFailedBuild(const std::string& Content)
{
	std::istringstream Lines(Content);
	std::string Errors;
	for (std::string Line; std::getline(Lines, Line);)
	{
		Errors += Line.find("error") != std::string::npos ? Line + "\n" : "";
	}
	return "The build failed:\n\n" + Shorten(Errors.empty() ? Content : Errors);
}

std::string DescribeSuccess(const PlainRequest& Request, const std::string& Content)
{
	switch (Request.What)
	{
	case PlainRequest::Kind::ReadFile:
		return DescribeFile(Request, Content);
	case PlainRequest::Kind::ListFolder:
		return DescribeTree(Request.Path, Content);
	case PlainRequest::Kind::RunPython:
		return DescribeScript(Content);
	case PlainRequest::Kind::FindText:
		return DescribeReferences(Request, Content);
	case PlainRequest::Kind::ReadBlueprint:
		return DescribeBlueprint(Content);
	case PlainRequest::Kind::ReadBehaviorTree:
		return DescribeBehaviorTree(Content);
	case PlainRequest::Kind::SaveBlueprints:
		return DescribeSavedBlueprints(Content);
	case PlainRequest::Kind::CreateBlueprint:
		return Content;
	case PlainRequest::Kind::AddVariable:
	case PlainRequest::Kind::AddFunction:
	case PlainRequest::Kind::PlacePrintNode:
		return DescribeChangedBlueprint(Content);
	case PlainRequest::Kind::Compile:
		return "The game is built.";
	case PlainRequest::Kind::Finish:
		return "Done.";
	default:
		return Content + ".";
	}
}

std::string DescribeError(const PlainRequest& Request, const std::string& Content)
{
	switch (Request.What)
	{
	case PlainRequest::Kind::Compile:
		return DescribeFailedBuild(Content);
	case PlainRequest::Kind::RunPython:
		return Shorten(Content);
	case PlainRequest::Kind::FindText:
		return "That did not work: " + Content;
	default:
		return "That did not work for " + (Request.Path.empty() ? "the project" : Request.Path) + ": " + Content;
	}
}
}

std::string DescribeResult(const PlainRequest& Request, const Json& Result)
{
	const std::string Content =
		Result.contains("content") && Result["content"].is_string() ? Result["content"].get<std::string>() : "";
	if (Result.value("is_abort", false))
	{
		return "You stopped me before I could use a tool.";
	}
	return Result.value("is_error", false) ? DescribeError(Request, Content) : DescribeSuccess(Request, Content);
}
