#include "BlueprintChange.h"
#include "RequestRules.h"

#include <algorithm>

namespace
{
/** The first part of a Blueprint, in this order, that the sentence names. */
std::string FindSection(const Sentence& Prompt)
{
	for (const char* Section : { "Variables", "Functions", "Components", "Interfaces", "Graphs" })
	{
		if (Prompt.HasAny({ ToLower(Section).c_str() }))
		{
			return Section;
		}
	}
	return "All";
}

/** The last name of a Blueprint that the sentence has: "to BP_A", "of the blueprint BP_A". */
const Word* FindBlueprintName(const Sentence& Prompt)
{
	for (size_t Index = Prompt.Words.size(); Index > 1; --Index)
	{
		const Word& Name = Prompt.Words[Index - 1];
		if (Prompt.Words[Index - 2].IsOneOf({ "to", "in", "of", "blueprint" }) &&
			!Name.IsOneOf({ "the", "a", "blueprint", "function", "type" }))
		{
			return &Name;
		}
	}
	return nullptr;
}

/** Pairs of a name and a type behind one of the words, as far as they go. */
std::vector<Plain::Parameter> FindParameters(const Sentence& Prompt, Choices Lowercase)
{
	std::vector<Plain::Parameter> Parameters;
	const auto End = Prompt.Words.end();
	auto At = std::find_if(Prompt.Words.begin(), End, [&](const Word& Each) { return Each.IsOneOf(Lowercase); });
	At += At == End ? 0 : 1;
	while (End - At >= 2)
	{
		if (At->IsOneOf({ "and" }))
		{
			++At;
			continue;
		}
		if (At->IsOneOf({ "to", "in", "of", "output", "outputs", "input", "inputs", "returning", "with" }))
		{
			break;
		}
		Parameters.push_back({ At[0].Text, At[1].Text });
		At += 2;
	}
	return Parameters;
}

/** The word behind "type", or else the first that names a type. */
const Word* FindType(const Sentence& Prompt, const Word* VariableName)
{
	if (const Word* const Type = Prompt.WordAfter({ "type" }))
	{
		return Type;
	}
	const auto Found = std::find_if(Prompt.Words.begin(), Prompt.Words.end(),
		[VariableName](const Word& Each) { return !Each.bQuoted && &Each != VariableName && IsTypeName(Each.Text); });
	return Found == Prompt.Words.end() ? nullptr : &*Found;
}

RuleResult ParseAddVariable(const Sentence& Prompt, const std::string& Blueprint)
{
	const Word* const Name = Prompt.NameAfter({ "variable" });
	const Word* const Type = FindType(Prompt, Name);
	if (!Name || !Type)
	{
		return NotUnderstood();
	}
	const Word* const Value = Prompt.WordAfter({ "value" });
	return Understood(Plain::AddVariable{
		Blueprint, Name->Text, Type->Text, Value ? Value->Unescape() : "", Prompt.HasAny({ "replicated" }) });
}
}

RuleResult ParseSave(const Sentence& Prompt)
{
	return Prompt.HasAny({ "all", "blueprints", "everything" }) ? Understood(Plain::SaveBlueprints{}) : std::nullopt;
}

RuleResult ParseBehaviorTree(const Sentence& Prompt)
{
	const Word* const Name = Prompt.NameAfter({ "tree" });
	return Name ? Understood(Plain::ReadBehaviorTree{ Name->Text }) : std::nullopt;
}

RuleResult ParseBlueprint(const Sentence& Prompt)
{
	const Word* const Name = Prompt.NameAfter({ "blueprint" });
	if (!Name)
	{
		return std::nullopt;
	}
	if (Prompt.HasAny({ "create", "make" }))
	{
		const Word* const Parent = Prompt.WordAfter({ "from", "of" });
		const Word* const Folder = Prompt.WordAfter({ "in" });
		return Understood(
			Plain::CreateBlueprint{ Name->Text, Parent ? Parent->Text : "Actor", Folder ? Folder->Text : "/Game" });
	}
	const bool bRead = Prompt.HasAny({ "read", "show", "open", "print", "display", "see", "look", "describe" });
	return bRead ? Understood(Plain::ReadBlueprint{ Name->Text, FindSection(Prompt) }) : std::nullopt;
}

RuleResult ParseAdd(const Sentence& Prompt)
{
	const Word* const Blueprint = FindBlueprintName(Prompt);
	if (!Blueprint)
	{
		return NotUnderstood();
	}
	if (Prompt.HasAny({ "variable" }))
	{
		return ParseAddVariable(Prompt, Blueprint->Text);
	}
	const Word* const Function = Prompt.NameAfter({ "function" });
	if (!Function)
	{
		return NotUnderstood();
	}
	if (Prompt.HasAny({ "print", "node" }))
	{
		const Word* const Text = Prompt.WordAfter({ "saying", "printing", "with" });
		return Understood(Plain::AddPrintNode{ Blueprint->Text, Function->Text, Text ? Text->Unescape() : "Hello" });
	}
	return Understood(
		Plain::AddFunction{ Blueprint->Text, Function->Text, FindParameters(Prompt, { "input", "inputs", "taking" }),
			FindParameters(Prompt, { "output", "outputs", "returning" }) });
}
