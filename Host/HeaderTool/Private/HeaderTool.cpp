#include "HeaderTool.h"

#include "Generate.h"
#include "HeaderParser.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{
bool ReadFile(const std::string& Path, std::string& OutText)
{
	std::ifstream File(Path, std::ios::binary);
	OutText.assign(std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>());
	return File.good() || File.eof();
}

bool WriteIfChanged(const std::string& Path, const std::string& Text)
{
	std::string OldText;
	if (std::filesystem::exists(Path) && ReadFile(Path, OldText) && OldText == Text)
	{
		return true;
	}
	std::ofstream File(Path, std::ios::binary);
	File << Text;
	return File.good();
}

/** The header's path below the deepest include root that it lies in, or its own path when it lies in none. */
std::string GetIncludePath(const std::string& Header, const std::vector<std::string>& Roots)
{
	std::string Result = Header;
	for (const std::string& Root : Roots)
	{
		const std::string Prefix = Root + "/";
		if (Header.starts_with(Prefix) && Header.size() - Prefix.size() < Result.size())
		{
			Result = Header.substr(Prefix.size());
		}
	}
	return Result;
}

void ReadInputs(const FHeaderToolOptions& Options, FModule& Module, FErrors& Errors)
{
	for (const std::string& Manifest : Options.UsedManifests)
	{
		if (!ReadManifest(Manifest, Module))
		{
			Errors.Add(Manifest, 1, "The manifest cannot be read");
		}
	}
	for (const std::string& Header : Options.Headers)
	{
		std::string Text;
		if (!ReadFile(Header, Text))
		{
			Errors.Add(Header, 1, "The header cannot be read");
			continue;
		}
		Module.Headers.push_back(ParseHeader(Header, GetIncludePath(Header, Options.IncludeRoots), Text, Errors));
	}
}

void Write(const std::string& Path, const std::string& Text, FErrors& Errors)
{
	if (!WriteIfChanged(Path, Text))
	{
		Errors.Add(Path, 1, "The file cannot be written");
	}
}
}

void RunHeaderTool(const FHeaderToolOptions& Options, FErrors& Errors)
{
	FModule Module;
	Module.Name = Options.ModuleName;
	Module.ApiMacro = Options.ApiMacro;
	ReadInputs(Options, Module, Errors);
	ResolveModule(Module, Errors);
	if (!Errors.IsEmpty())
	{
		return;
	}

	for (const FParsedHeader& Header : Module.Headers)
	{
		const std::string Stem = Options.OutputFolder + "/" + Header.Stem;
		Write(Stem + ".generated.h", GenerateHeader(Module, Header), Errors);
		Write(Stem + ".gen.cpp", GenerateSource(Module, Header), Errors);
	}
	Write(Options.ManifestPath, WriteManifest(Module), Errors);
}
