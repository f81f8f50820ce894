#pragma once

#include <string>
#include <string_view>
#include <vector>

enum class ETokenKind
{
	Identifier,
	Number,
	String, // Text is the value, without quotes and escapes
	Character,
	Symbol,    // one character, or "::"
	Directive, // a whole preprocessor line, continuation lines joined, without the '#'
	End,
};

struct FToken
{
	ETokenKind Kind = ETokenKind::End;
	std::string Text;
	int Line = 1; // counted from 1

	/** The comment that stands directly above the token, cleaned of its marks; lines are joined by "\n". */
	std::string Comment;

	/** The comment behind the token on the token's own line. */
	std::string TrailingComment;

	bool Is(std::string_view What) const
	{
		return Text == What && (Kind == ETokenKind::Identifier || Kind == ETokenKind::Symbol);
	}
};

/**
 * Splits C++ text into tokens. Comments become part of the token they belong to; no macro is expanded and nothing is
 * left out for a condition. The last token is of kind End.
 */
std::vector<FToken> Tokenize(std::string_view Text);
