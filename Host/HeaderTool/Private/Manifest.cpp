#include "Module.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace
{
std::vector<std::string> SplitAtTabs(const std::string& Line)
{
	std::vector<std::string> Parts;
	std::istringstream Stream(Line);
	for (std::string Part; std::getline(Stream, Part, '\t');)
	{
		Parts.push_back(Part);
	}
	Parts.resize(std::max<size_t>(Parts.size(), 4));
	return Parts;
}

bool HasWord(const std::string& Words, const std::string& Word)
{
	return (" " + Words + " ").find(" " + Word + " ") != std::string::npos;
}

constexpr std::pair<ETypeKind, std::string_view> KindNames[] = {
	{ ETypeKind::Class, "class" },
	{ ETypeKind::Struct, "struct" },
	{ ETypeKind::Enum, "enum" },
	{ ETypeKind::Delegate, "delegate" },
	{ ETypeKind::MulticastDelegate, "multicast" },
};

std::string_view KindName(ETypeKind Kind)
{
	return std::find_if(std::begin(KindNames), std::end(KindNames), [Kind](const auto& Each) {
		return Each.first == Kind;
	})->second;
}

/** An enum for a word that is none of the names. */
ETypeKind ReadKind(std::string_view Name)
{
	const auto Found = std::find_if(
		std::begin(KindNames), std::end(KindNames), [Name](const auto& Each) { return Each.second == Name; });
	return Found == std::end(KindNames) ? ETypeKind::Enum : Found->first;
}

FKnownType ReadType(const std::vector<std::string>& Parts, const std::string& Module)
{
	FKnownType Type;
	Type.Kind = ReadKind(Parts[0]);
	Type.Name = Parts[1];
	(Type.Kind == ETypeKind::Enum ? Type.Underlying : Type.Super) = Parts[2];
	Type.Module = Module;
	Type.bScoped = HasWord(Parts[3], "scoped");
	Type.bBlueprintType = HasWord(Parts[3], "blueprint");
	Type.bConfig = HasWord(Parts[3], "config");
	Type.bInstanced = HasWord(Parts[3], "instanced");
	Type.bDeclaresInitializer = HasWord(Parts[3], "initializer");
	Type.bDeclaresConstructor = HasWord(Parts[3], "constructor");
	return Type;
}
}

bool ReadManifest(const std::string& Path, FModule& Module)
{
	std::ifstream File(Path);
	std::string ManifestModule;
	for (std::string Line; std::getline(File, Line);)
	{
		const std::vector<std::string> Parts = SplitAtTabs(Line);
		if (Parts[0] == "module")
		{
			ManifestModule = Parts[1];
		}
		else if (Parts[0] == "header")
		{
			Module.KnownHeaders.push_back({ Parts[1], ManifestModule });
		}
		else
		{
			Module.Types.Add(ReadType(Parts, ManifestModule));
		}
	}
	return !ManifestModule.empty();
}

std::string WriteManifest(const FModule& Module)
{
	std::string Text = "module\t" + Module.Name + "\n";
	for (const FParsedHeader& Header : Module.Headers)
	{
		Text += Header.HasTypes() ? "header\t" + Header.Stem + "\n" : "";
	}
	for (const auto& [Name, Type] : Module.Types.GetTypes())
	{
		if (Type.Module == Module.Name)
		{
			Text += std::string(KindName(Type.Kind)) + "\t" + Name + "\t" + Type.Super + Type.Underlying + "\t" +
					(Type.bScoped ? "scoped " : "") + (Type.bBlueprintType ? "blueprint " : "") +
					(Type.bConfig ? "config " : "") + (Type.bInstanced ? "instanced " : "") +
					(Type.bDeclaresInitializer ? "initializer " : "") +
					(Type.bDeclaresConstructor ? "constructor " : "") + "\n";
		}
	}
	return Text;
}
