#include "SystemPrompt.h"

#include "EmbeddedFiles.h"

namespace
{
void ReplacePlaceholder(std::string& Text, const std::string& Name, const std::string& Value)
{
	const std::string Placeholder = "{{" + Name + "}}";
	const size_t At = Text.find(Placeholder);
	if (At != std::string::npos)
	{
		Text.replace(At, Placeholder.size(), Value);
	}
}

/** Only versions: the client's header goes into the prompt. */
std::string PlainVersion(const std::string& Version)
{
	constexpr size_t LongestVersion = 16;
	const bool bPlain = !Version.empty() && Version.size() <= LongestVersion &&
						Version.find_first_not_of("0123456789.") == std::string::npos;
	return bPlain ? Version : "5";
}
}

std::string FindRulesFile(const Json& Tree)
{
	for (const char* Name : { "KESTREL.md", "AGENTS.md" })
	{
		if (Tree.is_object() && Tree.contains(Name) && !Tree[Name].is_object())
		{
			return Name;
		}
	}
	return "";
}

std::string MakeSystemPrompt(const ProjectDescription& Project)
{
	std::string Text = EmbeddedFiles::SystemPrompt;
	const std::string Rules = Project.Rules.empty()
								  ? ""
								  : "\n## The project's own rules (" + Project.RulesFile +
										")\n\nThey go before the advice above.\n\n" + Project.Rules + "\n";
	// From the end, so that no placeholder in a name or a rule is filled in.
	ReplacePlaceholder(Text, "rules", Rules);
	const size_t TreeAt = Text.find("{{project_tree}}");
	std::string Head = Text.substr(0, TreeAt);
	std::string Tail = TreeAt == std::string::npos ? "" : Text.substr(TreeAt);
	ReplacePlaceholder(Tail, "project_tree", Project.Tree);
	ReplacePlaceholder(Head, "engine_version", PlainVersion(Project.EngineVersion));
	return Head + Tail;
}
