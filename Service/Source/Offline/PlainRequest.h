#pragma once

#include "Responder.h"
#include "Sentence.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

/**
 * What a person can ask for in plain words.
 *
 * Each kind names the tool that carries it out, makes the tool's input, and announces what will be done. Its subject is
 * what an error message names: a file, a folder or an asset; empty for the project as a whole.
 */
namespace Plain
{
struct ReadFile
{
	static constexpr const char* Tool = "read_file";
	std::string Path;
	std::optional<LineRange> Lines;

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return Path; }
};

struct ListFolder
{
	static constexpr const char* Tool = "get_filesystem_tree";
	std::string Path; // empty is the project

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return Path; }
};

struct CreateFile
{
	static constexpr const char* Tool = "create_file";
	std::string Path;
	std::string Text;

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return Path; }
};

struct ReplaceText
{
	static constexpr const char* Tool = "update_file";
	std::string Path;
	std::string Old;
	std::string New;

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return Path; }
};

struct InsertLine
{
	static constexpr const char* Tool = "insert_into_file";
	std::string Path;
	int LineNumber = 1; // that the text becomes
	std::string Text;

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return Path; }
};

struct DeleteFile
{
	static constexpr const char* Tool = "delete_file";
	std::string Path;

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return Path; }
};

struct RunPython
{
	static constexpr const char* Tool = "execute_unreal_engine_api_python_script";
	std::string Code;

	Json Input() const;
	std::string Announcement() const { return "run a Python script"; }
	std::string Subject() const { return ""; }
};

struct Compile
{
	static constexpr const char* Tool = "compile";

	Json Input() const { return Json::object(); }
	std::string Announcement() const { return "build the game"; }
	std::string Subject() const { return ""; }
};

struct FindText
{
	static constexpr const char* Tool = "find_reference_in_all_files";
	std::string Text;

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return ""; }
};

struct ReadBlueprint
{
	static constexpr const char* Tool = "read_blueprint";
	std::string Name;
	std::string Section; // "Variables", "Functions", ... or "All"

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return Name; }
};

struct CreateBlueprint
{
	static constexpr const char* Tool = "create_blueprint";
	std::string Name;
	std::string ParentClass;
	std::string Folder;

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return Name; }
};

struct SaveBlueprints
{
	static constexpr const char* Tool = "save_and_compile_all_dirty_blueprints";

	Json Input() const { return Json::object(); }
	std::string Announcement() const { return "save and compile every changed Blueprint"; }
	std::string Subject() const { return ""; }
};

struct ReadBehaviorTree
{
	static constexpr const char* Tool = "read_behavior_tree";
	std::string Name;

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return Name; }
};

struct AddVariable
{
	static constexpr const char* Tool = "modify_blueprint_variables";
	std::string Blueprint;
	std::string Name;
	std::string Type;
	std::string Value; // empty for the type's default
	bool bReplicated = false;

	Json Input() const;
	std::string Announcement() const { return "add the variable " + Name; }
	std::string Subject() const { return Blueprint; }
};

struct Parameter
{
	std::string Name;
	std::string Type;
};

struct AddFunction
{
	static constexpr const char* Tool = "modify_blueprint_variables";
	std::string Blueprint;
	std::string Name;
	std::vector<Parameter> Inputs;
	std::vector<Parameter> Outputs;

	Json Input() const;
	std::string Announcement() const { return "add the function " + Name; }
	std::string Subject() const { return Blueprint; }
};

/** Reads the function first: PlacePrintNode follows when it is known where the node can stand. */
struct AddPrintNode
{
	static constexpr const char* Tool = "read_blueprint";
	std::string Blueprint;
	std::string Function;
	std::string Text;

	Json Input() const;
	std::string Announcement() const;
	std::string Subject() const { return Blueprint; }
};

struct PlacePrintNode
{
	static constexpr const char* Tool = "modify_blueprint_variables";
	std::string Blueprint;
	std::string Function;
	std::string Text;
	std::string Preceding; // titles of the nodes that it comes between
	std::string Following; // empty at the end of the flow

	Json Input() const;
	std::string Announcement() const { return "add the node to " + Function; }
	std::string Subject() const { return Blueprint; }
};

struct Finish
{
	static constexpr const char* Tool = "finish";

	Json Input() const { return Json::object(); }
	std::string Announcement() const { return "finish"; }
	std::string Subject() const { return ""; }
};
}

using PlainRequest = std::variant<Plain::ReadFile, Plain::ListFolder, Plain::CreateFile, Plain::ReplaceText,
	Plain::InsertLine, Plain::DeleteFile, Plain::RunPython, Plain::Compile, Plain::FindText, Plain::ReadBlueprint,
	Plain::CreateBlueprint, Plain::SaveBlueprints, Plain::ReadBehaviorTree, Plain::AddVariable, Plain::AddFunction,
	Plain::AddPrintNode, Plain::PlacePrintNode, Plain::Finish>;

/** What an announcement or a message calls a path or an asset. */
std::string NameOrProject(const std::string& Name);
