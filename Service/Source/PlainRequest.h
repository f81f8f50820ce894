#pragma once

#include <optional>
#include <string>
#include <vector>

/** One thing that a person asked for in plain words. */
struct PlainRequest
{
	enum class Kind
	{
		ReadFile,
		ListFolder,
		CreateFile,
		ReplaceText,
		InsertLine,
		DeleteFile,
		RunPython,
		Compile,
		FindText,
		ReadBlueprint,
		CreateBlueprint,
		SaveBlueprints,
		ReadBehaviorTree,
		AddVariable,
		AddFunction,
		AddPrintNode,   // begins with a look at the function
		PlacePrintNode, // behind the node with the title OldText
		Finish,
	};

	struct Parameter
	{
		std::string Name;
		std::string Type;
	};

	Kind What = Kind::Finish;
	std::string Path;             // of a file, or of a folder ("" is the project itself); or an asset's name
	std::optional<int> FirstLine; // of a text to read; or the line that an inserted text becomes
	std::optional<int> LastLine;  // -1 is the last line of the file
	std::string OldText;          // to be replaced; the class that a Blueprint is made from; a variable's type
	std::string Text;             // new text, the script, what is looked for; a Blueprint's section or folder; a value
	std::string Member = {};      // a variable or function of the Blueprint
	std::vector<Parameter> Inputs = {};
	std::vector<Parameter> Outputs = {};
	bool bReplicated = false;
};

/**
 * Understands "read FILE", "show lines 5-12 of FILE", "read FILE lines 5 to 12", "read A.h and B.h",
 * "list the files in FOLDER", "show the tree", "create FILE with TEXT", "replace OLD with NEW in FILE",
 * "insert TEXT at line 3 of FILE", "delete FILE", "run python SCRIPT", "compile", "find TEXT", "read blueprint NAME",
 * "show the variables of blueprint NAME", "create blueprint NAME from CLASS in /Game/FOLDER", "save all", "read
 * behavior tree NAME", "add an int variable NAME to BLUEPRINT with value 5", "add function NAME with inputs A int, B
 * vector and output C bool to BLUEPRINT", "add a print node to function NAME of BLUEPRINT saying TEXT", "finish".
 * Letter case does not count outside paths and texts. What has blanks stands in quotes; \n, \t and \" mean what they
 * mean in C. A script is all that follows, or stands in a block between lines of three backquotes.
 *
 * @return what was asked for, in order; empty when nothing was understood
 */
std::vector<PlainRequest> UnderstandPlainRequests(const std::string& Text);
