#include "ResultText.h"

#include "BlueprintText.h"
#include "JsonFields.h"

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
		return "I see no files there: either " + NameOrProject(Path) +
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

std::string DescribeFile(const Plain::ReadFile& Request, const std::string& Content)
{
	const Quote Beginning = QuoteBeginning(Content);
	const std::string Kind = Request.Lines ? "From " + Request.Path + ", " : Request.Path + ", ";
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

std::string DescribeFiles(const Plain::FindText& Request, const Json& Files)
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

/** The beginning of a list of paths with a line above, or nothing for none. What is no path is left out. */
std::string DescribePaths(const std::string& Heading, const std::vector<Json>& Lists)
{
	std::string Text;
	size_t NumPaths = 0;
	for (const Json& List : Lists)
	{
		for (const Json& Path : List)
		{
			if (Path.is_string() && NumPaths++ < MaxQuotedLines)
			{
				Text += "\n  " + Path.get<std::string>();
			}
		}
	}
	return Text.empty() ? "" : "\n\n" + Heading + Text + (NumPaths > MaxQuotedLines ? "\n  ... and more" : "");
}

/** What a search has left out, which may have the text in it all the same. */
std::string DescribeNotSearched(const Json& Found)
{
	const auto LeftOut = [&Found](const char* Field) {
		const Json Value = Found.value(Field, Json());
		return Value.is_object() ? Value.value("paths", Json::array()) : Json::array();
	};
	return DescribePaths("Not searched, since reading them needs your approval:",
			   { LeftOut("cpp_not_searched"), LeftOut("blueprints_not_searched") }) +
		   DescribePaths("Not searched, since they are too large:", { Found.value("cpp_files_not_searched", Json()) });
}

std::string DescribeReferences(const Plain::FindText& Request, const std::string& Content)
{
	const Json Found = Json::parse(Content, nullptr, false);
	if (!Found.is_object() || !Found.contains("cpp_references") || !Found["cpp_references"].is_array())
	{
		return Content;
	}
	const std::string Blueprints =
		DescribeBlueprintReferences(Found.value("blueprint_references", Json::array()), MaxQuotedLines);
	return DescribeFiles(Request, Found["cpp_references"]) + (Blueprints.empty() ? "" : "\n\n" + Blueprints) +
		   DescribeNotSearched(Found);
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

/** What a tool returned when it worked; the kinds without an overload add a full stop to the tool's sentence. */
struct SuccessText
{
	const std::string& Content;

	std::string operator()(const Plain::ReadFile& Request) const { return DescribeFile(Request, Content); }
	std::string operator()(const Plain::ListFolder& Request) const { return DescribeTree(Request.Path, Content); }
	std::string operator()(const Plain::RunPython&) const { return DescribeScript(Content); }
	std::string operator()(const Plain::FindText& Request) const { return DescribeReferences(Request, Content); }
	std::string operator()(const Plain::ReadBlueprint&) const { return DescribeBlueprint(Content); }
	std::string operator()(const Plain::ReadBehaviorTree&) const { return DescribeBehaviorTree(Content); }
	std::string operator()(const Plain::SaveBlueprints&) const { return DescribeSavedBlueprints(Content); }
	std::string operator()(const Plain::CreateBlueprint&) const { return Content; }
	std::string operator()(const Plain::AddVariable&) const { return DescribeChangedBlueprint(Content); }
	std::string operator()(const Plain::AddFunction&) const { return DescribeChangedBlueprint(Content); }
	std::string operator()(const Plain::PlacePrintNode&) const { return DescribeChangedBlueprint(Content); }
	std::string operator()(const Plain::Compile&) const { return "The game is built."; }
	std::string operator()(const Plain::Finish&) const { return "Done."; }
	template <typename RequestType>
	std::string operator()(const RequestType&) const
	{
		return Content + ".";
	}
};

struct ErrorText
{
	const std::string& Content;

	std::string operator()(const Plain::Compile&) const { return DescribeFailedBuild(Content); }
	std::string operator()(const Plain::RunPython&) const { return Shorten(Content); }
	std::string operator()(const Plain::FindText&) const { return "That did not work: " + Content; }
	template <typename RequestType>
	std::string operator()(const RequestType& Request) const
	{
		return "That did not work for " + NameOrProject(Request.Subject()) + ": " + Content;
	}
};
}

std::string DescribeResult(const PlainRequest& Request, const Json& Result)
{
	const std::string Content = GetText(Result, "content");
	if (Result.value("is_abort", false))
	{
		return "You stopped me before I could use a tool.";
	}
	return Result.value("is_error", false) ? std::visit(ErrorText{ Content }, Request)
										   : std::visit(SuccessText{ Content }, Request);
}
