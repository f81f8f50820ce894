#include "HeaderTool.h"

#include <cstdio>
#include <string_view>

namespace
{
bool ParseArguments(int ArgumentCount, char** Arguments, FHeaderToolOptions& Options)
{
	for (int Index = 1; Index < ArgumentCount; ++Index)
	{
		const std::string_view Name = Arguments[Index];
		if (!Name.starts_with("--"))
		{
			Options.Headers.emplace_back(Name);
			continue;
		}
		if (++Index == ArgumentCount)
		{
			return false;
		}
		const std::string Value = Arguments[Index];
		if (Name == "--module")
		{
			Options.ModuleName = Value;
		}
		else if (Name == "--api")
		{
			Options.ApiMacro = Value;
		}
		else if (Name == "--output")
		{
			Options.OutputFolder = Value;
		}
		else if (Name == "--manifest")
		{
			Options.ManifestPath = Value;
		}
		else if (Name == "--use")
		{
			Options.UsedManifests.push_back(Value);
		}
		else if (Name == "--root")
		{
			Options.IncludeRoots.push_back(Value);
		}
		else
		{
			return false;
		}
	}
	return !Options.ModuleName.empty() && !Options.OutputFolder.empty() && !Options.ManifestPath.empty();
}
}

int main(int ArgumentCount, char** Arguments)
{
	FHeaderToolOptions Options;
	if (!ParseArguments(ArgumentCount, Arguments, Options))
	{
		std::fprintf(stderr, "Usage: HeaderTool --module <Name> --api <MACRO> --output <folder> --manifest <file> "
							 "[--use <manifest>]... [--root <include folder>]... <header>...\n");
		return 2;
	}

	FErrors Errors;
	RunHeaderTool(Options, Errors);
	for (const std::string& Line : Errors.GetLines())
	{
		std::fprintf(stderr, "%s\n", Line.c_str());
	}
	return Errors.IsEmpty() ? 0 : 1;
}
