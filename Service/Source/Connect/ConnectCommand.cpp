#include "ConnectCommand.h"

#include "Certificates.h"
#include "ConfigBlock.h"
#include "Platform.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace
{
namespace fs = std::filesystem;

const char* const ConnectUsage = "Usage: kestrel-service connect --project DIR --state FOLDER [--port N] [--yes]\n"
								 "       kestrel-service disconnect --project DIR";

/** A line of a project's configuration that must not be there already, and what is written with it. */
struct ConnectedFile
{
	const char* Name; // in the project's Config folder
	const char* Section;
	const char* Key;
	std::string Lines;
};

std::vector<ConnectedFile> GetConnectedFiles(const std::string& Port, const std::string& Authority)
{
	return {
		{ "DefaultPlugin.ini", "Kestrel", "Stage", "[Kestrel]\nStage=Dev\nDevApiUrl=localhost:" + Port + "/v1\n" },
		{ "DefaultEngine.ini", "SSL", "DebuggingCertificatePath",
			"[SSL]\nDebuggingCertificatePath=" + Authority + "\n" },
	};
}

struct FileChange
{
	fs::path Path;
	std::string Text;
	bool bRemove = false;
};

std::optional<std::string> ReadIfThere(const fs::path& Path)
{
	if (fs::is_symlink(Path) && !fs::exists(Path))
	{
		throw std::runtime_error(Path.string() + " is a link that leads nowhere");
	}
	if (!fs::exists(Path))
	{
		return std::nullopt;
	}
	if (!fs::is_regular_file(Path))
	{
		throw std::runtime_error(Path.string() + " is not a file");
	}
	std::ifstream File(Path, std::ios::binary);
	std::ostringstream Text;
	Text << File.rdbuf();
	if (!File.is_open() || File.bad())
	{
		throw std::runtime_error(Path.string() + " cannot be read");
	}
	if (Text.str().find('\0') != std::string::npos)
	{
		throw std::runtime_error(Path.string() + " is UTF-16. Save it as UTF-8 first, or edit it by hand.");
	}
	return Text.str();
}

void CheckIsProject(const fs::path& Project)
{
	std::error_code Problem;
	for (const auto& Entry : fs::directory_iterator(Project, Problem))
	{
		if (Entry.path().extension() == ".uproject")
		{
			return;
		}
	}
	throw std::runtime_error("There is no .uproject file in " + Project.string());
}

FileChange PlanConnection(const fs::path& Path, const ConnectedFile& File)
{
	const std::optional<std::string> Text = ReadIfThere(Path);
	const ConfigBlock::Removed Without = ConfigBlock::Remove(Text.value_or(""));
	if (ConfigBlock::Sets(Without.Text, File.Section, File.Key))
	{
		throw std::runtime_error(
			Path.string() + " sets " + File.Key + " in [" + File.Section +
			"] already. Remove that line first, if the project is to use the service on this machine.");
	}
	return { Path, ConfigBlock::Add(Without.Text, File.Lines, !Text || Without.bRemoveFile), false };
}

void Apply(const FileChange& Change)
{
	if (Change.bRemove)
	{
		fs::remove(Change.Path);
		return;
	}
	fs::create_directories(Change.Path.parent_path());
	const bool bThere = fs::exists(Change.Path);
	// A link stays one, and permissions what they were.
	const fs::path Target = bThere ? fs::canonical(Change.Path) : Change.Path;
	const fs::perms Permissions = bThere ? fs::status(Target).permissions() : fs::perms::none;
	if (bThere && (Permissions & fs::perms::owner_write) == fs::perms::none)
	{
		throw std::runtime_error(Target.string() + " is read-only. Check it out first.");
	}
	try
	{
		Platform::WriteWholeFile(Target.string(), Change.Text, Platform::Readers::Everybody);
	}
	catch (const std::runtime_error& Error)
	{
		throw std::runtime_error(Target.string() + " cannot be written: " + Error.what());
	}
	if (bThere)
	{
		fs::permissions(Target, Permissions);
	}
}

void ShowLines(std::ostream& Out, const fs::path& Path, char Sign, const std::string& Lines)
{
	Out << Path.string() << "\n";
	std::istringstream Stream(Lines);
	for (std::string Line; std::getline(Stream, Line);)
	{
		Out << "  " << Sign << " " << Line << "\n";
	}
}

bool Connect(
	const fs::path& Project, const std::map<std::string, std::string>& Given, std::istream& In, std::ostream& Out)
{
	if (Given.at("--state").find_first_of("\r\n") != std::string::npos)
	{
		throw std::runtime_error("The path of the state folder has a line break, which no configuration can hold");
	}
	const std::string Authority = fs::absolute(PrepareCertificates(Given.at("--state"), {}).Authority).generic_string();
	std::vector<FileChange> Changes;
	for (const ConnectedFile& File : GetConnectedFiles(Given.at("--port"), Authority))
	{
		Changes.push_back(PlanConnection(Project / "Config" / File.Name, File));
		ShowLines(Out, Changes.back().Path, '+', File.Lines);
	}
	if (!Given.count("--yes"))
	{
		Out << "Write this? [y/N] " << std::flush;
		std::string Answer;
		std::getline(In, Answer);
		if (Answer != "y" && Answer != "Y" && Answer != "yes")
		{
			Out << "Nothing was written." << std::endl;
			return false;
		}
	}
	for (const FileChange& Each : Changes)
	{
		Apply(Each);
	}
	Out << "Written. Start the service with --port " << Given.at("--port") << ", then the editor." << std::endl;
	return true;
}

void Disconnect(const fs::path& Project, std::ostream& Out)
{
	std::vector<FileChange> Changes;
	for (const ConnectedFile& File : GetConnectedFiles("", ""))
	{
		const fs::path Path = Project / "Config" / File.Name;
		const ConfigBlock::Removed Without = ConfigBlock::Remove(ReadIfThere(Path).value_or(""));
		if (!Without.Lines.empty())
		{
			ShowLines(Out, Path, '-', Without.Lines);
			Changes.push_back({ Path, Without.Text, Without.bRemoveFile });
		}
	}
	for (const FileChange& Each : Changes)
	{
		Apply(Each);
	}
	Out << (Changes.empty() ? "The project is not connected." : "Removed.") << std::endl;
}

bool IsPort(const std::string& Text)
{
	return !Text.empty() && Text.size() <= 5 && Text.find_first_not_of("0123456789") == std::string::npos &&
		   std::stoi(Text) > 0 && std::stoi(Text) <= 65535;
}
}

bool RunConnectCommand(const std::vector<std::string>& Words, std::istream& In, std::ostream& Out)
{
	std::map<std::string, std::string> Given = { { "--port", "8443" } };
	for (size_t Index = 1; Index < Words.size(); ++Index)
	{
		const std::string& Word = Words[Index];
		const bool bTakesValue = Word == "--project" || Word == "--state" || Word == "--port";
		if ((!bTakesValue && Word != "--yes") || (bTakesValue && Index + 1 == Words.size()))
		{
			throw std::runtime_error(ConnectUsage);
		}
		Given[Word] = bTakesValue ? Words[++Index] : "";
	}
	const bool bConnect = Words[0] == "connect";
	if (!Given.count("--project") || (bConnect && !Given.count("--state")) || !IsPort(Given["--port"]))
	{
		throw std::runtime_error(ConnectUsage);
	}
	const fs::path Project = Given["--project"];
	CheckIsProject(Project);
	if (bConnect)
	{
		return Connect(Project, Given, In, Out);
	}
	Disconnect(Project, Out);
	return true;
}
