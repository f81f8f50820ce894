#include "ProjectTree.h"

#include <algorithm>
#include <set>
#include <vector>

namespace
{
struct Folder
{
	const Json* Content;
	size_t Depth;
};

size_t LineBytes(const std::string& Name, size_t Depth)
{
	return Name.size() + Depth * 2 + 2; // a slash and a line break
}

/** Folders level by level, Source's before those of the same level. */
std::vector<Folder> ListFolders(const Json& Tree)
{
	std::vector<Folder> Folders = { { &Tree, 0 } };
	for (size_t Index = 0; Index < Folders.size(); ++Index)
	{
		const Folder Each = Folders[Index];
		const auto Add = [&](const Json& Child) { Folders.push_back({ &Child, Each.Depth + 1 }); };
		if (Each.Depth == 0 && Each.Content->contains("Source") && (*Each.Content)["Source"].is_object())
		{
			Add((*Each.Content)["Source"]);
		}
		for (const auto& [Name, Child] : Each.Content->items())
		{
			if (Child.is_object() && (Each.Depth > 0 || Name != "Source"))
			{
				Add(Child);
			}
		}
	}
	return Folders;
}

size_t CountFiles(const Json& Tree)
{
	size_t Count = 0;
	for (const Json& Child : Tree)
	{
		Count += Child.is_object() ? CountFiles(Child) : 1;
	}
	return Count;
}

/** Those whose content fits, as a whole, in that order. */
std::set<const Json*> ChooseFolders(const Json& Tree, size_t MaxBytes)
{
	std::set<const Json*> Chosen;
	size_t Bytes = 0;
	for (const Folder& Each : ListFolders(Tree))
	{
		size_t Needed = 0;
		for (const auto& [Name, Child] : Each.Content->items())
		{
			Needed += LineBytes(Name, Each.Depth);
		}
		if (Bytes + Needed <= MaxBytes)
		{
			Bytes += Needed;
			Chosen.insert(Each.Content);
		}
	}
	return Chosen;
}

void Write(const Json& Tree, const std::set<const Json*>& Chosen, const std::string& Indent, std::string& Out)
{
	for (const auto& [Name, Child] : Tree.items())
	{
		const bool bFolder = Child.is_object();
		Out += Indent + Name + (bFolder ? "/" : "");
		if (bFolder && !Chosen.count(&Child))
		{
			Out += " (" + std::to_string(CountFiles(Child)) + " files not listed)";
		}
		Out += "\n";
		if (bFolder && Chosen.count(&Child))
		{
			Write(Child, Chosen, Indent + "  ", Out);
		}
	}
}
}

std::string DescribeProjectTree(const Json& Tree, size_t MaxBytes)
{
	if (!Tree.is_object() || Tree.empty())
	{
		return "(no files)\n";
	}
	const std::set<const Json*> Chosen = ChooseFolders(Tree, MaxBytes);
	std::string Text;
	if (Chosen.count(&Tree))
	{
		Write(Tree, Chosen, "", Text);
	}
	else
	{
		Text = "(" + std::to_string(CountFiles(Tree)) + " files, too many to list)\n";
	}
	const bool bPruned = Text.find(" files not listed)") != std::string::npos || !Chosen.count(&Tree);
	return Text + (bPruned ? "Not all files are listed: get_filesystem_tree lists those of a folder.\n" : "");
}
