#pragma once

#include "Lexer.h"
#include "Model.h"

#include <string>
#include <vector>

/** The condition that a token stands below. */
enum class ECondition
{
	None,
	Editor,         // WITH_EDITOR
	EditorOnlyData, // WITH_EDITORONLY_DATA
	Unknown,
};

struct FSourceToken : FToken
{
	ECondition Condition = ECondition::None;
};

struct FInclude
{
	std::string File;
	int Line = 0;
};

struct FSource
{
	std::vector<FSourceToken> Tokens; // without directives; the last is of kind End
	std::vector<FInclude> Includes;
};

/** Evaluates the conditions that are known and takes the directives out. */
FSource ResolveConditions(const std::vector<FToken>& Tokens);
