#include "RequestRules.h"

#include <algorithm>

namespace
{
constexpr size_t MaxRequests = 8;

/** What stands between lines of three backquotes, if there is such a block. */
std::optional<std::string> FindCodeBlock(const std::string& Prompt)
{
	const size_t Open = Prompt.find("```");
	const size_t FirstLine = Open == std::string::npos ? Open : Prompt.find('\n', Open);
	const size_t Close = FirstLine == std::string::npos ? FirstLine : Prompt.find("```", FirstLine);
	return Close == std::string::npos ? std::nullopt
									  : std::optional(Prompt.substr(FirstLine + 1, Close - FirstLine - 1));
}

/** What follows the word "python", or else "script"; they have the same length. */
std::optional<std::string> FindTrailingScript(const std::string& Prompt)
{
	const std::string Lower = ToLower(Prompt);
	size_t At = Lower.find("python");
	At = At == std::string::npos ? Lower.find("script") : At;
	At = At == std::string::npos ? At : Prompt.find_first_not_of(": \n", At + std::string("python").size());
	return At == std::string::npos ? std::nullopt : std::optional(Prompt.substr(At));
}
}

RuleResult ParseRead(const Sentence& Prompt)
{
	Sentence Words = Prompt;
	const std::optional<LineRange> Lines = Words.TakeLines();
	std::vector<PlainRequest> Requests;
	for (const Word* Path : Words.Paths())
	{
		const bool bFolder = !Path->Text.empty() && Path->Text.back() == '/';
		Requests.push_back(bFolder ? PlainRequest(Plain::ListFolder{ Path->Text })
								   : PlainRequest(Plain::ReadFile{ Path->Text, Lines }));
	}
	Requests.resize(std::min(Requests.size(), MaxRequests));
	return Requests;
}

RuleResult ParseList(const Sentence& Prompt)
{
	const std::vector<Word>& Words = Prompt.Words;
	for (size_t Index = 0; Index < Words.size(); ++Index)
	{
		const bool bNamed = Index > 0 && Words[Index - 1].IsOneOf({ "in", "of", "under", "below" }) &&
							!Words[Index].IsOneOf({ "the", "this", "project" });
		if (bNamed || Words[Index].IsPath())
		{
			return Understood(Plain::ListFolder{ Words[Index].Text });
		}
	}
	return Understood(Plain::ListFolder{});
}

RuleResult ParseCreate(const Sentence& Prompt)
{
	const Word* const Path = Prompt.FirstPath();
	if (!Path)
	{
		return NotUnderstood();
	}
	Sentence Behind = Prompt;
	Behind.Words.erase(Behind.Words.begin(), Behind.Words.begin() + (Path - Prompt.Words.data()));
	const Word* const Text = Behind.WordAfter({ "with", "containing", "saying" });
	return Understood(Plain::CreateFile{ Path->Text, Text ? Text->Unescape() : "" });
}

RuleResult ParseReplace(const Sentence& Prompt)
{
	const Word* const Old = Prompt.WordAfter({ "replace", "change" });
	const Word* const New = Prompt.WordAfter({ "with", "by", "to" });
	const Word* Path = Prompt.WordAfter({ "in" });
	Path = Path && Path->IsPath() ? Path : Prompt.LastPath();
	if (!Old || !New || !Path || Path == Old || Path == New)
	{
		return NotUnderstood();
	}
	return Understood(Plain::ReplaceText{ Path->Text, Old->Unescape(), New->Unescape() });
}

RuleResult ParseInsert(const Sentence& Prompt)
{
	const Word* const Text = Prompt.WordAfter({ "insert" });
	const Word* const Line = Prompt.WordAfter({ "line" });
	const Word* const Path = Prompt.LastPath();
	const std::optional<LineRange> Lines = Line ? ParseLineRange(Line->Text) : std::nullopt;
	if (!Text || !Lines || !Path || Path == Text)
	{
		return NotUnderstood();
	}
	return Understood(Plain::InsertLine{ Path->Text, Lines->First, Text->Unescape() });
}

RuleResult ParseDelete(const Sentence& Prompt)
{
	std::vector<PlainRequest> Requests;
	for (const Word* Path : Prompt.Paths())
	{
		Requests.push_back(Plain::DeleteFile{ Path->Text });
	}
	Requests.resize(std::min(Requests.size(), MaxRequests));
	return Requests;
}

RuleResult ParsePython(const Sentence& Prompt)
{
	if (const std::optional<std::string> Block = FindCodeBlock(Prompt.Prompt))
	{
		return Understood(Plain::RunPython{ *Block });
	}
	const std::optional<std::string> Script = FindTrailingScript(Prompt.Prompt);
	if (!Script)
	{
		return NotUnderstood();
	}
	const Word& Last = Prompt.Words.back();
	const bool bQuoted = Last.bQuoted && Script->size() > 1 && Script->front() == Script->back() &&
						 std::string("\"'`").find(Script->front()) != std::string::npos;
	return Understood(Plain::RunPython{ bQuoted ? Last.Unescape() : *Script });
}

RuleResult ParseFind(const Sentence& Prompt)
{
	for (const Word& Each : Prompt.Words)
	{
		if (!Each.IsOneOf({ "please", "find", "search", "where", "is", "for", "the", "all", "uses", "references", "of",
				"to", "used", "who" }))
		{
			return Understood(Plain::FindText{ Each.Unescape() });
		}
	}
	return NotUnderstood();
}
