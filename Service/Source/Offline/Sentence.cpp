#include "Sentence.h"

#include <algorithm>
#include <cctype>
#include <regex>

namespace
{
constexpr size_t MaxPromptBytes = 20000;

/** Between words; a comma between digits, as in "1,2,3", is part of one. */
bool IsBetweenWords(const std::string& Text, size_t At)
{
	const auto IsDigit = [&Text](size_t Place) {
		return Place < Text.size() && std::isdigit(static_cast<unsigned char>(Text[Place]));
	};
	return std::isspace(static_cast<unsigned char>(Text[At])) ||
		   (Text[At] == ',' && !(At > 0 && IsDigit(At - 1) && IsDigit(At + 1)));
}

/** Up to the closing quote, if there is one. At moves behind it. */
Word TakeQuoted(const std::string& Text, size_t& At)
{
	const char Quote = Text[At];
	const size_t Start = At + 1;
	size_t End = Start;
	while (End < Text.size() && Text[End] != Quote)
	{
		End += Text[End] == '\\' && End + 1 < Text.size() ? 2 : 1;
	}
	At = End + 1;
	return { Text.substr(Start, End - Start), true };
}

/** Punctuation at the end of a word falls off. */
Word TakePlain(const std::string& Text, size_t& At)
{
	const size_t Start = At;
	while (At < Text.size() && !IsBetweenWords(Text, At))
	{
		++At;
	}
	std::string Part = Text.substr(Start, At - Start);
	while (Part.size() > 1 && std::string(".?!:;").find(Part.back()) != std::string::npos)
	{
		Part.pop_back();
	}
	return { Part, false };
}

std::vector<Word> SplitWords(const std::string& Text)
{
	std::vector<Word> Words;
	for (size_t At = 0; At < Text.size();)
	{
		if (IsBetweenWords(Text, At))
		{
			++At;
			continue;
		}
		const bool bQuoted = Text[At] == '"' || Text[At] == '\'' || Text[At] == '`';
		Words.push_back(bQuoted ? TakeQuoted(Text, At) : TakePlain(Text, At));
	}
	return Words;
}
}

std::string ToLower(std::string Text)
{
	std::transform(Text.begin(), Text.end(), Text.begin(), [](unsigned char C) { return std::tolower(C); });
	return Text;
}

std::optional<LineRange> ParseLineRange(const std::string& Text)
{
	static const std::regex Range(R"((\d{1,9})(?:(?:-|\.\.)(\d{1,9})?)?)");
	std::smatch Match;
	if (!std::regex_match(Text, Match, Range))
	{
		return std::nullopt;
	}
	const int First = std::stoi(Match[1]);
	const bool bHasEnd = Match[2].matched;
	const bool bOpen = !bHasEnd && Match[0].length() > Match[1].length();
	return LineRange{ First, bHasEnd ? std::stoi(Match[2]) : bOpen ? -1 : First };
}

bool Word::IsOneOf(Choices Lowercase) const
{
	const std::string Lower = ToLower(Text);
	return !bQuoted &&
		   std::any_of(Lowercase.begin(), Lowercase.end(), [&Lower](const char* Choice) { return Lower == Choice; });
}

bool Word::IsPath() const
{
	return bQuoted || (Text.find_first_of("./") != std::string::npos && Text != "." && Text != "/");
}

std::string Word::Unescape() const
{
	std::string Result;
	for (size_t At = 0; At < Text.size(); ++At)
	{
		if (!bQuoted || Text[At] != '\\' || At + 1 == Text.size())
		{
			Result += Text[At];
			continue;
		}
		const char Next = Text[++At];
		Result += Next == 'n' ? '\n' : Next == 't' ? '\t' : Next == 'r' ? '\r' : Next;
	}
	return Result;
}

Sentence::Sentence(const std::string& InPrompt)
	: Prompt(InPrompt.substr(0, MaxPromptBytes))
	, Words(SplitWords(Prompt))
{
}

bool Sentence::HasAny(Choices Lowercase) const
{
	return std::any_of(Words.begin(), Words.end(), [&](const Word& Each) { return Each.IsOneOf(Lowercase); });
}

bool Sentence::BeginsWith(Choices Lowercase) const
{
	const auto First = std::find_if_not(Words.begin(), Words.end(), [](const Word& Each) {
		return Each.IsOneOf({ "please", "now", "can", "could", "you", "and", "then", "ok", "okay" });
	});
	return First != Words.end() && First->IsOneOf(Lowercase);
}

const Word* Sentence::WordAfter(Choices Lowercase) const
{
	for (size_t Index = 0; Index + 1 < Words.size(); ++Index)
	{
		if (Words[Index].IsOneOf(Lowercase))
		{
			return &Words[Index + 1];
		}
	}
	return nullptr;
}

const Word* Sentence::NameAfter(Choices Lowercase) const
{
	const Word* const Name = WordAfter(Lowercase);
	return Name && Name->IsOneOf({ "called", "named" }) ? WordAfter({ "called", "named" }) : Name;
}

std::vector<const Word*> Sentence::Paths() const
{
	std::vector<const Word*> Result;
	for (const Word& Each : Words)
	{
		if (Each.IsPath())
		{
			Result.push_back(&Each);
		}
	}
	return Result;
}

const Word* Sentence::FirstPath() const
{
	const std::vector<const Word*> All = Paths();
	return All.empty() ? nullptr : All.front();
}

const Word* Sentence::LastPath() const
{
	const std::vector<const Word*> All = Paths();
	return All.empty() ? nullptr : All.back();
}

std::optional<LineRange> Sentence::TakeLines()
{
	for (size_t Index = 0; Index + 1 < Words.size(); ++Index)
	{
		std::optional<LineRange> Lines =
			Words[Index].IsOneOf({ "line", "lines" }) ? ParseLineRange(Words[Index + 1].Text) : std::nullopt;
		if (!Lines)
		{
			continue;
		}
		size_t End = Index + 2;
		const bool bGoesOn = End + 1 < Words.size() && Words[End].IsOneOf({ "to", "through", "until", "-" });
		if (const std::optional<LineRange> Upper = bGoesOn ? ParseLineRange(Words[End + 1].Text) : std::nullopt)
		{
			Lines->Last = Upper->First;
			End += 2;
		}
		Words.erase(
			Words.begin() + static_cast<std::ptrdiff_t>(Index), Words.begin() + static_cast<std::ptrdiff_t>(End));
		return Lines;
	}
	return std::nullopt;
}
