#pragma once

#include "PlainRequest.h"

/** What one rule makes of a sentence; nothing lets the next rule try, an empty list ends the search. */
using RuleResult = std::optional<std::vector<PlainRequest>>;

inline RuleResult Understood(PlainRequest Request)
{
	return std::vector<PlainRequest>{ std::move(Request) };
}

/** The rule is the right one, but something is missing. */
inline RuleResult NotUnderstood()
{
	return std::vector<PlainRequest>{};
}

/** Recognizes one way of putting a request. */
struct RequestRule
{
	enum class Place
	{
		First,    // the sentence begins with one of the words
		Anywhere, // it has one of them
	};

	Place Where;
	Choices Words;
	RuleResult (*Parse)(const Sentence& Prompt);
};

RuleResult ParseRead(const Sentence& Prompt);
RuleResult ParseList(const Sentence& Prompt);
RuleResult ParseCreate(const Sentence& Prompt);
RuleResult ParseReplace(const Sentence& Prompt);
RuleResult ParseInsert(const Sentence& Prompt);
RuleResult ParseDelete(const Sentence& Prompt);
RuleResult ParsePython(const Sentence& Prompt);
RuleResult ParseFind(const Sentence& Prompt);

RuleResult ParseSave(const Sentence& Prompt);
RuleResult ParseBehaviorTree(const Sentence& Prompt);
RuleResult ParseBlueprint(const Sentence& Prompt);
RuleResult ParseAdd(const Sentence& Prompt);
