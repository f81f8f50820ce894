#pragma once

#include "Responder.h"

#include <string>

/** What the model is told about the project it works on. */
struct ProjectDescription
{
	std::string EngineVersion; // "5.4", or empty
	std::string Tree;
	std::string RulesFile; // KESTREL.md or AGENTS.md, or empty
	std::string Rules;
};

/** The file with the project's rules for assistants, or an empty string when the tree has none at its root. */
std::string FindRulesFile(const Json& Tree);

/** The system prompt; SystemPrompt.md has its text and its version. */
std::string MakeSystemPrompt(const ProjectDescription& Project);
