#include "ConfigReader.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace
{
std::string ReadWholeFile(const std::string& Path)
{
	constexpr std::streamsize MaxBytes = 1 << 20;
	std::ifstream File(Path, std::ios::binary);
	std::string Text(static_cast<size_t>(MaxBytes), '\0');
	File.read(Text.data(), MaxBytes);
	if (!File.is_open() || File.bad() || File.gcount() == MaxBytes)
	{
		throw std::runtime_error("The configuration " + Path + " cannot be read, or is larger than 1 MiB");
	}
	Text.resize(static_cast<size_t>(File.gcount()));
	return Text;
}

/** "key", "api_key", "token" and the like: somebody has put the secret itself here. */
bool NamesASecret(std::string Path)
{
	std::transform(Path.begin(), Path.end(), Path.begin(), [](unsigned char C) { return std::tolower(C); });
	const std::string Name = Path.substr(Path.rfind('.') + 1);
	const auto EndsWith = [&Name](const std::string& End) {
		return Name.size() >= End.size() && Name.compare(Name.size() - End.size(), End.size(), End) == 0;
	};
	return EndsWith("key") || EndsWith("token") || EndsWith("secret") || EndsWith("password");
}

std::string FormatNumber(double Number)
{
	std::ostringstream Text;
	Text.precision(15);
	Text << Number;
	return Text.str();
}
}

ConfigReader::ConfigReader(const std::string& InPath)
	: File(InPath)
{
	const std::string Text = ReadWholeFile(File);
	try
	{
		Document = toml::parse(Text, File);
	}
	catch (const toml::parse_error& Error)
	{
		// The parser's description can repeat what it found, which may be a key.
		throw std::runtime_error(File + ":" + std::to_string(Error.source().begin.line) + ": this is not valid TOML");
	}
}

const toml::node* ConfigReader::Find(const std::string& Path)
{
	Known.insert(Path);
	return Document.at_path(Path).node();
}

bool ConfigReader::Has(const std::string& Path) const
{
	return static_cast<bool>(Document.at_path(Path));
}

void ConfigReader::Read(const std::string& Path, std::string& Target)
{
	const toml::node* const Node = Find(Path);
	if (Node && !Node->is_string())
	{
		AddErrorAt(Node, Path + " must be a string");
	}
	else if (Node)
	{
		Target = **Node->as_string();
	}
}

void ConfigReader::Read(const std::string& Path, bool& Target)
{
	const toml::node* const Node = Find(Path);
	if (Node && !Node->is_boolean())
	{
		AddErrorAt(Node, Path + " must be true or false");
	}
	else if (Node)
	{
		Target = **Node->as_boolean();
	}
}

void ConfigReader::Read(const std::string& Path, std::vector<std::string>& Target)
{
	const toml::node* const Node = Find(Path);
	if (!Node)
	{
		return;
	}
	const toml::array* const Array = Node->as_array();
	Target.clear();
	for (size_t Index = 0; Array && Index < Array->size(); ++Index)
	{
		if (const auto* const Text = (*Array)[Index].as_string())
		{
			Target.push_back(**Text);
		}
	}
	if (!Array || Target.size() != Array->size())
	{
		AddErrorAt(Node, Path + " must be an array of strings");
	}
}

void ConfigReader::Read(const std::string& Path, double& Target, double Lowest, double Highest)
{
	ReadNumber(Path, Lowest, Highest, false, Target);
}

bool ConfigReader::ReadNumber(const std::string& Path, double Lowest, double Highest, bool bWhole, double& Number)
{
	const toml::node* const Node = Find(Path);
	if (!Node)
	{
		return false;
	}
	const double Value = Node->is_number() ? Node->value<double>().value_or(NAN) : NAN;
	const bool bRightKind = Node->is_integer() || (Node->is_floating_point() && !bWhole);
	if (!bRightKind || !(Value >= Lowest && Value <= Highest))
	{
		AddErrorAt(Node, Path + " must be a " + (bWhole ? "whole number" : "number") + " from " + FormatNumber(Lowest) +
							 " to " + FormatNumber(Highest));
		return false;
	}
	Number = Value;
	return true;
}

void ConfigReader::AddErrorAt(const toml::node* Node, const std::string& Text)
{
	const std::string Line = Node ? ":" + std::to_string(Node->source().begin.line) : "";
	Errors += (Errors.empty() ? "" : "\n") + File + Line + ": " + Text;
}

void ConfigReader::AddError(const std::string& Path, const std::string& What)
{
	AddErrorAt(Document.at_path(Path).node(), Path + " " + What);
}

void ConfigReader::AddUnknown(const toml::table& Table, const std::string& Prefix)
{
	for (const auto& [Key, Node] : Table)
	{
		const std::string Path = Prefix + std::string(Key.str());
		if (Known.count(Path))
		{
			continue;
		}
		if (NamesASecret(Path))
		{
			AddErrorAt(&Node, Path + " does not belong into the configuration, which is copied and shared: name the "
									 "environment variable that holds the key in server.key_variable, or the file in "
									 "server.key_file");
		}
		else if (const toml::table* const Inner = Node.as_table())
		{
			AddUnknown(*Inner, Path + ".");
		}
		else
		{
			AddErrorAt(&Node, Path + " is not a member of the configuration");
		}
	}
}

void ConfigReader::Finish()
{
	AddUnknown(Document, "");
	FinishPart();
}

void ConfigReader::FinishPart() const
{
	if (!Errors.empty())
	{
		throw std::runtime_error(Errors);
	}
}
