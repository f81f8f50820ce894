#include "PlainRequest.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <regex>

namespace
{
/** Longer prompts are cut before they are read: they are talk, not one of the short requests. */
constexpr size_t MaxPromptBytes = 2000;
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

/** Words, with what stands in quotes as one; punctuation at the end of a word falls off. */
std::vector<Word> SplitWords(const std::string& Text)
{
	std::vector<Word> Words;
	for (size_t At = 0; At < Text.size();)
	{
		const char C = Text[At];
		if (std::isspace(static_cast<unsigned char>(C)) || C == ',')
		{
			++At;
			continue;
		}
		const bool bQuoted = C == '"' || C == '\'' || C == '`';
		const size_t Start = bQuoted ? At + 1 : At;
		size_t End = Start;
		while (End < Text.size() &&
			   (bQuoted ? Text[End] != C : !std::isspace(static_cast<unsigned char>(Text[End])) && Text[End] != ','))
		{
			++End;
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

bool IsOneOf(const Word& Candidate, std::initializer_list<const char*> Choices)
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
				Lines.FirstLine, Lines.LastLine });
		}
	}
	return Requests;
}

std::vector<PlainRequest> UnderstandList(const std::vector<Word>& Words)
{
	for (size_t Index = 0; Index < Words.size(); ++Index)
	{
		const bool bNamed = Index > 0 && IsOneOf(Words[Index - 1], { "in", "of", "under", "below" }) &&
							!IsOneOf(Words[Index], { "the", "this", "project" });
		if (bNamed || IsPath(Words[Index]))
		{
			return { { PlainRequest::Kind::ListFolder, Words[Index].Text, {}, {} } };
		}
	}
	return { { PlainRequest::Kind::ListFolder, "", {}, {} } };
}
}

std::vector<PlainRequest> UnderstandPlainRequests(const std::string& Text)
{
	const std::vector<Word> Words = SplitWords(Text.substr(0, MaxPromptBytes));
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
		return { { PlainRequest::Kind::Finish, "", {}, {} } };
	}
	return {};
}
