#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

using Choices = std::initializer_list<const char*>;

/** Lines from 1; a last line of -1 is the file's last. */
struct LineRange
{
	int First = 1;
	int Last = -1;
};

/** A word of a prompt, or all that stands in quotes. */
struct Word
{
	std::string Text;
	bool bQuoted = false;

	/** Case-insensitive; what stands in quotes is none of them. */
	bool IsOneOf(Choices Lowercase) const;
	/** A name with a dot or a slash in it, or anything in quotes. */
	bool IsPath() const;
	/** Of a quoted word with \n, \t, \" and the like as one character each; any other verbatim. */
	std::string Unescape() const;
};

/** A prompt and its words. Pointers to words live as long as it does. */
struct Sentence
{
	/** Prompts longer than 20,000 bytes are truncated: they are talk, not a short request. */
	explicit Sentence(const std::string& InPrompt);

	bool HasAny(Choices Lowercase) const;
	/** Whether it begins with one of the words, apart from polite ones such as "please". */
	bool BeginsWith(Choices Lowercase) const;
	/** The first word after one of the choices; null when there is none. */
	const Word* WordAfter(Choices Lowercase) const;
	/** The same, skipping "called" and "named". */
	const Word* NameAfter(Choices Lowercase) const;
	const Word* FirstPath() const;
	const Word* LastPath() const;
	std::vector<const Word*> Paths() const;
	/** Removes and returns "lines 5-12" or "lines 5 to 12", wherever it stands. */
	std::optional<LineRange> TakeLines();

	std::string Prompt;
	std::vector<Word> Words;
};

std::string ToLower(std::string Text);

/** "5", "5-12", "5..12", "5-" (to the end). */
std::optional<LineRange> ParseLineRange(const std::string& Text);
