#include "PlainRequest.h"

#include "BlueprintChange.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <regex>

namespace
{
/** Longer prompts are cut before they are read: they are talk, not one of the short requests. */
constexpr size_t MaxPromptBytes = 20000;
constexpr size_t MaxRequests = 8;

struct Word
{
	std::string Text;
	bool bQuoted = false;
};

std::string ToLower(std::string Text)
{
	std::transform(Text.begin(), Text.end(), Text.begin(), [](unsigned char C) { return std::tolower(C); });
	return Text;
}

/** Between words; a comma between digits, as in "1,2,3", is part of one. */
bool IsBetweenWords(const std::string& Text, size_t At)
{
	const auto IsDigit = [&Text](size_t Place) {
		return Place < Text.size() && std::isdigit(static_cast<unsigned char>(Text[Place]));
	};
	return std::isspace(static_cast<unsigned char>(Text[At])) ||
		   (Text[At] == ',' && !(At > 0 && IsDigit(At - 1) && IsDigit(At + 1)));
}

/** Words, with what stands in quotes as one; punctuation at the end of a word falls off. */
std::vector<Word> SplitWords(const std::string& Text)
{
	std::vector<Word> Words;
	for (size_t At = 0; At < Text.size();)
	{
		const char C = Text[At];
		if (IsBetweenWords(Text, At))
		{
			++At;
			continue;
		}
		const bool bQuoted = C == '"' || C == '\'' || C == '`';
		const size_t Start = bQuoted ? At + 1 : At;
		size_t End = Start;
		while (End < Text.size() && (bQuoted ? Text[End] != C : !IsBetweenWords(Text, End)))
		{
			End += bQuoted && Text[End] == '\\' && End + 1 < Text.size() ? 2 : 1;
		}
		std::string Part = Text.substr(Start, End - Start);
		while (!bQuoted && Part.size() > 1 && std::string(".?!:;").find(Part.back()) != std::string::npos)
		{
			Part.pop_back();
		}
		Words.push_back({ Part, bQuoted });
		At = bQuoted ? End + 1 : End;
	}
	return Words;
}

bool IsOneOf(const Word& Candidate, const std::initializer_list<const char*>& Choices)
{
	const std::string Lower = ToLower(Candidate.Text);
	return !Candidate.bQuoted &&
		   std::any_of(Choices.begin(), Choices.end(), [&Lower](const char* Choice) { return Lower == Choice; });
}

/** A name with a dot or a slash in it, or anything in quotes. */
bool IsPath(const Word& Candidate)
{
	return Candidate.bQuoted ||
		   (Candidate.Text.find_first_of("./") != std::string::npos && Candidate.Text != "." && Candidate.Text != "/");
}

/** "5", "5-12", "5..12", "5-" (to the end). */
bool ReadLines(const std::string& Text, PlainRequest& Request)
{
	static const std::regex Range(R"((\d{1,9})(?:(?:-|\.\.)(\d{1,9})?)?)");
	std::smatch Match;
	if (!std::regex_match(Text, Match, Range))
	{
		return false;
	}
	Request.FirstLine = std::stoi(Match[1]);
	const bool bHasEnd = Match[2].matched;
	const bool bOpen = !bHasEnd && Match[0].length() > Match[1].length();
	Request.LastLine = bHasEnd ? std::stoi(Match[2]) : bOpen ? -1 : *Request.FirstLine;
	return true;
}

/** "lines 5-12" or "lines 5 to 12", wherever it stands; the words are taken out. */
void TakeLines(std::vector<Word>& Words, PlainRequest& Lines)
{
	for (size_t Index = 0; Index + 1 < Words.size(); ++Index)
	{
		if (!IsOneOf(Words[Index], { "line", "lines" }) || !ReadLines(Words[Index + 1].Text, Lines))
		{
			continue;
		}
		size_t End = Index + 2;
		PlainRequest Upper;
		if (End + 1 < Words.size() && IsOneOf(Words[End], { "to", "through", "until", "-" }) &&
			ReadLines(Words[End + 1].Text, Upper))
		{
			Lines.LastLine = Upper.FirstLine;
			End += 2;
		}
		Words.erase(
			Words.begin() + static_cast<std::ptrdiff_t>(Index), Words.begin() + static_cast<std::ptrdiff_t>(End));
		return;
	}
}

/** A text as it was meant: \n, \t, \" and the like are one character. Only quoted texts have such. */
std::string TextOf(const Word& Given)
{
	std::string Text;
	for (size_t At = 0; At < Given.Text.size(); ++At)
	{
		const char C = Given.Text[At];
		if (!Given.bQuoted || C != '\\' || At + 1 == Given.Text.size())
		{
			Text += C;
			continue;
		}
		const char Next = Given.Text[++At];
		Text += Next == 'n' ? "\n" : Next == 't' ? "\t" : Next == 'r' ? "\r" : std::string(1, Next);
	}
	return Text;
}

/** The first word after one of the choices; null when there is none. */
const Word* WordAfter(const std::vector<Word>& Words, std::initializer_list<const char*> Choices)
{
	for (size_t Index = 0; Index + 1 < Words.size(); ++Index)
	{
		if (IsOneOf(Words[Index], Choices))
		{
			return &Words[Index + 1];
		}
	}
	return nullptr;
}

const Word* LastPath(const std::vector<Word>& Words)
{
	const auto Found = std::find_if(Words.rbegin(), Words.rend(), IsPath);
	return Found == Words.rend() ? nullptr : &*Found;
}

bool HasAny(const std::vector<Word>& Words, std::initializer_list<const char*> Choices)
{
	return std::any_of(Words.begin(), Words.end(), [&Choices](const Word& Each) { return IsOneOf(Each, Choices); });
}

std::vector<PlainRequest> UnderstandRead(std::vector<Word> Words)
{
	PlainRequest Lines;
	TakeLines(Words, Lines);
	std::vector<PlainRequest> Requests;
	for (const Word& Each : Words)
	{
		if (IsPath(Each) && Requests.size() < MaxRequests)
		{
			const bool bFolder = !Each.Text.empty() && Each.Text.back() == '/';
			Requests.push_back({ bFolder ? PlainRequest::Kind::ListFolder : PlainRequest::Kind::ReadFile, Each.Text,
				Lines.FirstLine, Lines.LastLine, "", "" });
		}
	}
	return Requests;
}

std::vector<PlainRequest> UnderstandCreate(const std::vector<Word>& Words, const std::string&)
{
	const auto Path = std::find_if(Words.begin(), Words.end(), IsPath);
	if (Path == Words.end())
	{
		return {};
	}
	const std::vector<Word> Behind(Path, Words.end());
	const Word* Text = WordAfter(Behind, { "with", "containing", "saying" });
	return { { PlainRequest::Kind::CreateFile, Path->Text, {}, {}, "", Text ? TextOf(*Text) : "" } };
}

std::vector<PlainRequest> UnderstandReplace(const std::vector<Word>& Words, const std::string&)
{
	const Word* Old = WordAfter(Words, { "replace", "change" });
	const Word* New = WordAfter(Words, { "with", "by", "to" });
	const Word* Path = WordAfter(Words, { "in" });
	Path = Path && IsPath(*Path) ? Path : LastPath(Words);
	if (!Old || !New || !Path || Path == Old || Path == New)
	{
		return {};
	}
	return { { PlainRequest::Kind::ReplaceText, Path->Text, {}, {}, TextOf(*Old), TextOf(*New) } };
}

std::vector<PlainRequest> UnderstandInsert(const std::vector<Word>& Words, const std::string&)
{
	const Word* Text = WordAfter(Words, { "insert" });
	const Word* Line = WordAfter(Words, { "line" });
	const Word* Path = LastPath(Words);
	PlainRequest Request{ PlainRequest::Kind::InsertLine, Path ? Path->Text : "", {}, {}, "", "" };
	if (!Text || !Line || !Path || Path == Text || !ReadLines(Line->Text, Request))
	{
		return {};
	}
	Request.Text = TextOf(*Text);
	return { Request };
}

std::vector<PlainRequest> UnderstandDelete(const std::vector<Word>& Words, const std::string&)
{
	std::vector<PlainRequest> Requests;
	for (const Word& Each : Words)
	{
		if (IsPath(Each) && Requests.size() < MaxRequests)
		{
			Requests.push_back({ PlainRequest::Kind::DeleteFile, Each.Text, {}, {}, "", "" });
		}
	}
	return Requests;
}

/** What stands between lines of three backquotes, if there is such a block. */
std::optional<std::string> FindCodeBlock(const std::string& Prompt)
{
	const size_t Open = Prompt.find("```");
	const size_t FirstLine = Open == std::string::npos ? Open : Prompt.find('\n', Open);
	const size_t Close = FirstLine == std::string::npos ? FirstLine : Prompt.find("```", FirstLine);
	return Close == std::string::npos ? std::nullopt
									  : std::optional(Prompt.substr(FirstLine + 1, Close - FirstLine - 1));
}

std::vector<PlainRequest> UnderstandPython(const std::vector<Word>& Words, const std::string& Prompt)
{
	PlainRequest Request{ PlainRequest::Kind::RunPython, "", {}, {}, "", "" };
	if (const std::optional<std::string> Block = FindCodeBlock(Prompt))
	{
		Request.Text = *Block;
		return { Request };
	}
	const std::string Lower = ToLower(Prompt);
	size_t At = Lower.find("python");
	At = At == std::string::npos ? Lower.find("script") : At;
	At = At == std::string::npos ? At : Prompt.find_first_not_of(": \n", At + std::string("python").size());
	if (At == std::string::npos)
	{
		return {};
	}
	const std::string Rest = Prompt.substr(At);
	const bool bQuoted = Words.back().bQuoted && Rest.size() > 1 && Rest.front() == Rest.back() &&
						 std::string("\"'`").find(Rest.front()) != std::string::npos;
	Request.Text = bQuoted ? TextOf(Words.back()) : Rest;
	return { Request };
}

std::vector<PlainRequest> UnderstandCompile(const std::vector<Word>&, const std::string&)
{
	return { { PlainRequest::Kind::Compile, "", {}, {}, "", "" } };
}

std::vector<PlainRequest> UnderstandFind(const std::vector<Word>& Words, const std::string&)
{
	for (const Word& Each : Words)
	{
		if (!IsOneOf(Each, { "please", "find", "search", "where", "is", "for", "the", "all", "uses", "references", "of",
							   "to", "used", "who" }))
		{
			return { { PlainRequest::Kind::FindText, "", {}, {}, "", TextOf(Each) } };
		}
	}
	return {};
}

/** The first of the words that names a part of a Blueprint, as the tool calls it. */
std::string FindSection(const std::vector<Word>& Words)
{
	for (const char* Section : { "Variables", "Functions", "Components", "Interfaces", "Graphs" })
	{
		const std::string Lower = ToLower(Section);
		if (HasAny(Words, { Lower.c_str() }))
		{
			return Section;
		}
	}
	return "All";
}

const Word* NameAfter(const std::vector<Word>& Words, std::initializer_list<const char*> Choices)
{
	const Word* const Name = WordAfter(Words, Choices);
	return Name && IsOneOf(*Name, { "called", "named" }) ? WordAfter(Words, { "called", "named" }) : Name;
}

/** What is said about Blueprints and behavior trees; nothing when neither is. */
std::vector<PlainRequest> UnderstandAsset(const std::vector<Word>& Words)
{
	if (HasAny(Words, { "save" }) && HasAny(Words, { "all", "blueprints", "everything" }))
	{
		return { { PlainRequest::Kind::SaveBlueprints, "", {}, {}, "", "" } };
	}
	const Word* const Tree = HasAny(Words, { "behavior", "behaviour" }) ? NameAfter(Words, { "tree" }) : nullptr;
	if (Tree)
	{
		return { { PlainRequest::Kind::ReadBehaviorTree, Tree->Text, {}, {}, "", "" } };
	}
	const Word* const Name = NameAfter(Words, { "blueprint" });
	if (!Name)
	{
		return {};
	}
	if (HasAny(Words, { "create", "make" }))
	{
		const Word* const Parent = WordAfter(Words, { "from", "of" });
		const Word* const Folder = WordAfter(Words, { "in" });
		return { { PlainRequest::Kind::CreateBlueprint, Name->Text, {}, {}, Parent ? Parent->Text : "Actor",
			Folder ? Folder->Text : "/Game" } };
	}
	const bool bRead = HasAny(Words, { "read", "show", "open", "print", "display", "see", "look", "describe" });
	return bRead ? std::vector<PlainRequest>{ { PlainRequest::Kind::ReadBlueprint, Name->Text, {}, {}, "",
					   FindSection(Words) } }
				 : std::vector<PlainRequest>{};
}

/** The last name of a Blueprint that the sentence has: "to BP_A", "of the blueprint BP_A". */
const Word* FindBlueprintName(const std::vector<Word>& Words)
{
	for (size_t Index = Words.size(); Index > 1; --Index)
	{
		const Word& Name = Words[Index - 1];
		if (IsOneOf(Words[Index - 2], { "to", "in", "of", "blueprint" }) &&
			!IsOneOf(Name, { "the", "a", "blueprint", "function", "type" }))
		{
			return &Name;
		}
	}
	return nullptr;
}

/** Pairs of a name and a type behind one of the choices, as far as they go. */
std::vector<PlainRequest::Parameter> FindParameters(
	const std::vector<Word>& Words, std::initializer_list<const char*> Choices)
{
	std::vector<PlainRequest::Parameter> Parameters;
	auto At = std::find_if(Words.begin(), Words.end(), [Choices](const Word& Each) { return IsOneOf(Each, Choices); });
	At += At == Words.end() ? 0 : 1;
	while (Words.end() - At >= 2)
	{
		if (IsOneOf(*At, { "and" }))
		{
			++At;
			continue;
		}
		if (IsOneOf(*At, { "to", "in", "of", "output", "outputs", "input", "inputs", "returning", "with" }))
		{
			break;
		}
		Parameters.push_back({ At[0].Text, At[1].Text });
		At += 2;
	}
	return Parameters;
}

std::vector<PlainRequest> UnderstandAddVariable(const std::vector<Word>& Words, PlainRequest Request)
{
	const Word* const Name = NameAfter(Words, { "variable" });
	const Word* Type = WordAfter(Words, { "type" });
	const auto Found = std::find_if(Words.begin(), Words.end(),
		[Name](const Word& Each) { return !Each.bQuoted && &Each != Name && IsTypeName(Each.Text); });
	Type = Type || Found == Words.end() ? Type : &*Found;
	if (!Name || !Type)
	{
		return {};
	}
	const Word* const Value = WordAfter(Words, { "value" });
	Request.What = PlainRequest::Kind::AddVariable;
	Request.Member = Name->Text;
	Request.OldText = Type->Text;
	Request.Text = Value ? TextOf(*Value) : "";
	Request.bReplicated = HasAny(Words, { "replicated" });
	return { Request };
}

std::vector<PlainRequest> UnderstandAdd(const std::vector<Word>& Words, const std::string&)
{
	PlainRequest Request;
	const Word* const Blueprint = FindBlueprintName(Words);
	if (!Blueprint)
	{
		return {};
	}
	Request.Path = Blueprint->Text;
	if (HasAny(Words, { "variable" }))
	{
		return UnderstandAddVariable(Words, Request);
	}
	const Word* const Function = NameAfter(Words, { "function" });
	if (!Function)
	{
		return {};
	}
	const bool bPrint = HasAny(Words, { "print", "node" });
	const Word* const Text = WordAfter(Words, { "saying", "printing", "with" });
	Request.Member = Function->Text;
	Request.What = bPrint ? PlainRequest::Kind::AddPrintNode : PlainRequest::Kind::AddFunction;
	Request.Text = bPrint ? (Text ? TextOf(*Text) : "Hello") : "";
	Request.Inputs = FindParameters(Words, { "input", "inputs", "taking" });
	Request.Outputs = FindParameters(Words, { "output", "outputs", "returning" });
	return { Request };
}

/** A word that says by itself what is wanted. */
struct Verb
{
	std::initializer_list<const char*> Words;
	std::vector<PlainRequest> (*Understand)(const std::vector<Word>& Words, const std::string& Prompt);
};

const Verb Verbs[] = {
	{ { "create", "write" }, UnderstandCreate },
	{ { "replace", "change" }, UnderstandReplace },
	{ { "insert" }, UnderstandInsert },
	{ { "delete", "remove" }, UnderstandDelete },
	{ { "run", "python", "execute" }, UnderstandPython },
	{ { "compile", "build", "rebuild" }, UnderstandCompile },
	{ { "find", "search", "where" }, UnderstandFind },
	{ { "add" }, UnderstandAdd },
};

/** Whether the sentence begins with the verb, but for a few words of politeness. */
bool IsFirstVerb(const std::vector<Word>& Words, const Verb& Candidate)
{
	for (const Word& Each : Words)
	{
		if (IsOneOf(Each, Candidate.Words))
		{
			return true;
		}
		if (!IsOneOf(Each, { "please", "now", "can", "could", "you", "and", "then", "ok", "okay" }))
		{
			return false;
		}
	}
	return false;
}

std::vector<PlainRequest> UnderstandList(const std::vector<Word>& Words)
{
	for (size_t Index = 0; Index < Words.size(); ++Index)
	{
		const bool bNamed = Index > 0 && IsOneOf(Words[Index - 1], { "in", "of", "under", "below" }) &&
							!IsOneOf(Words[Index], { "the", "this", "project" });
		if (bNamed || IsPath(Words[Index]))
		{
			return { { PlainRequest::Kind::ListFolder, Words[Index].Text, {}, {}, "", "" } };
		}
	}
	return { { PlainRequest::Kind::ListFolder, "", {}, {}, "", "" } };
}
}

std::vector<PlainRequest> UnderstandPlainRequests(const std::string& Text)
{
	const std::string Prompt = Text.substr(0, MaxPromptBytes);
	const std::vector<Word> Words = SplitWords(Prompt);
	// What comes behind these is a text or a script, which may well speak of saving all or of a blueprint.
	static const Verb WithText = {
		{ "replace", "change", "insert", "run", "python", "execute", "find", "search", "where", "add" }, nullptr
	};
	const std::vector<PlainRequest> Assets =
		IsFirstVerb(Words, WithText) ? std::vector<PlainRequest>{} : UnderstandAsset(Words);
	if (!Assets.empty())
	{
		return Assets;
	}
	for (const Verb& Each : Verbs)
	{
		if (!Words.empty() && IsFirstVerb(Words, Each))
		{
			return Each.Understand(Words, Prompt);
		}
	}
	if (HasAny(Words, { "list", "tree", "files", "folders", "structure" }))
	{
		return UnderstandList(Words);
	}
	if (HasAny(Words, { "read", "show", "open", "print", "display", "see", "look" }))
	{
		return UnderstandRead(Words);
	}
	if (HasAny(Words, { "finish", "done", "bye" }))
	{
		return { { PlainRequest::Kind::Finish, "", {}, {}, "", "" } };
	}
	return {};
}
