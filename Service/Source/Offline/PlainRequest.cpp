#include "PlainRequest.h"

#include "BlueprintChange.h"

#include <algorithm>

namespace
{
Json ChangeInput(const std::string& Blueprint, const Json& Updates)
{
	return { { "blueprint_name", Blueprint }, { "updates", Updates.dump() } };
}
}

std::string NameOrProject(const std::string& Name)
{
	return Name.empty() ? "the project" : Name;
}

namespace Plain
{
Json ReadFile::Input() const
{
	Json Result = { { "path", Path } };
	if (Lines)
	{
		Result["view_range"] = { Lines->First, Lines->Last };
	}
	return Result;
}

std::string ReadFile::Announcement() const
{
	return "read " + NameOrProject(Path);
}

Json ListFolder::Input() const
{
	return { { "dir_path", Path } };
}

std::string ListFolder::Announcement() const
{
	return "list " + NameOrProject(Path);
}

Json CreateFile::Input() const
{
	return { { "path", Path }, { "file_text", Text } };
}

std::string CreateFile::Announcement() const
{
	return "create " + NameOrProject(Path);
}

Json ReplaceText::Input() const
{
	return { { "path", Path }, { "old_string", Old }, { "new_string", New } };
}

std::string ReplaceText::Announcement() const
{
	return "edit " + NameOrProject(Path);
}

Json InsertLine::Input() const
{
	// The tool counts the lines that stay above.
	return { { "path", Path }, { "insert_line", std::to_string(std::max(LineNumber - 1, 0)) }, { "new_string", Text } };
}

std::string InsertLine::Announcement() const
{
	return "insert a line into " + NameOrProject(Path);
}

Json DeleteFile::Input() const
{
	return { { "path", Path } };
}

std::string DeleteFile::Announcement() const
{
	return "delete " + NameOrProject(Path);
}

Json RunPython::Input() const
{
	return { { "code", Code } };
}

Json FindText::Input() const
{
	return { { "reference_string", Text } };
}

std::string FindText::Announcement() const
{
	return "search the project for \"" + Text + "\"";
}

Json ReadBlueprint::Input() const
{
	return { { "blueprint_name", Name }, { "data_subset", Section } };
}

std::string ReadBlueprint::Announcement() const
{
	return "read the Blueprint " + NameOrProject(Name);
}

Json CreateBlueprint::Input() const
{
	return { { "BPPath", Folder }, { "BPName", Name }, { "BPParentClassName", ParentClass } };
}

std::string CreateBlueprint::Announcement() const
{
	return "create the Blueprint " + NameOrProject(Name);
}

Json ReadBehaviorTree::Input() const
{
	return { { "behavior_tree_name", Name } };
}

std::string ReadBehaviorTree::Announcement() const
{
	return "read the behavior tree " + NameOrProject(Name);
}

Json AddVariable::Input() const
{
	return ChangeInput(Blueprint, MakeVariable(*this));
}

Json AddFunction::Input() const
{
	return ChangeInput(Blueprint, MakeFunction(*this));
}

Json AddPrintNode::Input() const
{
	return { { "blueprint_name", Blueprint }, { "data_subset", "Functions" } };
}

std::string AddPrintNode::Announcement() const
{
	return "look at the functions of " + NameOrProject(Blueprint);
}

Json PlacePrintNode::Input() const
{
	return ChangeInput(Blueprint, MakePrintNode(*this));
}
}
