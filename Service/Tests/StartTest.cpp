#include "Certificates.h"
#include "Options.h"
#include "ScriptResponder.h"
#include "TestFolder.h"

#include <csignal>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/resource.h>

namespace
{
std::string ErrorOf(const std::function<void()>& Work)
{
	try
	{
		Work();
	}
	catch (const std::exception& Error)
	{
		return Error.what();
	}
	return "";
}

Options Parse(std::vector<std::string> Words)
{
	Words.insert(Words.begin(), { "kestrel-service", "--state", "/tmp/state" });
	std::vector<char*> Pointers;
	for (std::string& Word : Words)
	{
		Pointers.push_back(Word.data());
	}
	return Options::Parse(static_cast<int>(Pointers.size()), Pointers.data());
}
}

TEST(StartTest, TheKeyComesFromAFileOrTheEnvironment)
{
	const TestFolder Folder;
	Folder.Write("key", "from file\r\n");
	Folder.Write("empty", "\n");
	setenv(Options::KeyVariable, "from environment", 1);
	EXPECT_EQ(Parse({}).ApiKey, "from environment");
	EXPECT_EQ(Parse({ "--key-file", Folder.Path + "/key" }).ApiKey, "from file");
	unsetenv(Options::KeyVariable);
	EXPECT_EQ(Parse({}).ApiKey, "");
	for (const char* Name : { "/empty", "/missing" })
	{
		EXPECT_NE(ErrorOf([&] { Parse({ "--key-file", Folder.Path + Name }); }).find(Name), std::string::npos) << Name;
	}
	EXPECT_NE(ErrorOf([] { Parse({ "--api-key", "seen by all" }); }), "");
}

TEST(StartTest, AScriptThatIsNotValidIsNamedWithItsPlace)
{
	const std::pair<const char*, const char*> Cases[] = {
		{ R"({"turns": [{"response": {}},])", "line 1, column" },
		{ R"([])", "turns must be an array" },
		{ R"({"turns": {}})", "turns must be an array" },
		{ R"({"turns": [{}, 5]})", "turns[1] must be an object" },
		{ R"({"turns": [{"responce": {}}]})", "turns[0].responce is not" },
		{ R"({"turns": [{"expect": {"mesage": ""}}]})", "turns[0].expect.mesage is not" },
		{ R"({"turns": [{"expect": []}]})", "turns[0].expect must be an object" },
		{ R"({"turns": [{"command": {"code": "500"}}]})", "turns[0].command.code must be" },
		{ R"({"turns": [{"command": {"code": 99}}]})", "turns[0].command.code must be" },
		{ R"({"turns": [{"status": {}}]})", "turns[0].status must be an array" },
		{ R"({"turns": [{"status": [{}, "DONE"]}]})", "turns[0].status[1] must be" },
		{ R"({"turns": [{"status": [{"delay_seconds": -1}]}]})", "turns[0].status[0].delay_seconds must be" },
		{ R"({"turns": [{"status": [{"raw": 5}]}]})", "turns[0].status[0].raw must be" },
	};
	for (const auto& [Text, Expected] : Cases)
	{
		const TestFolder Folder;
		Folder.Write("talk.json", Text);
		const std::string Error = ErrorOf([&Folder] { ScriptResponder{ Folder.Path }; });
		EXPECT_NE(Error.find(Expected), std::string::npos) << Text << "\n" << Error;
		EXPECT_NE(Error.find(Folder.Path + "/talk.json"), std::string::npos) << Error;
	}
	EXPECT_NE(ErrorOf([] { ScriptResponder{ "/no/such/folder" }; }), "");
}

TEST(StartTest, AStateFolderThatCannotBeWrittenIsReportedAndKeepsWhatItHas)
{
	const TestFolder Folder;
	Folder.Write("file", "");
	const std::string NoFolder = ErrorOf([&Folder] { PrepareCertificates(Folder.Path + "/file", {}); });
	EXPECT_NE(NoFolder.find("The state folder cannot be created"), std::string::npos) << NoFolder;
	EXPECT_NE(NoFolder.find("/file"), std::string::npos) << NoFolder;

	const std::string State = Folder.Path + "/state";
	PrepareCertificates(State, {});
	const auto Before = std::filesystem::file_size(State + "/server.pem");
	// As on a full disk: the file opens, and not a byte of it can be written.
	std::signal(SIGXFSZ, SIG_IGN);
	rlimit Usual = {};
	getrlimit(RLIMIT_FSIZE, &Usual);
	const rlimit Full = { 0, Usual.rlim_max };
	setrlimit(RLIMIT_FSIZE, &Full);
	const std::string NoSpace = ErrorOf([&State] { PrepareCertificates(State, {}); });
	setrlimit(RLIMIT_FSIZE, &Usual);
	EXPECT_NE(NoSpace.find("The state folder cannot be written: " + State), std::string::npos) << NoSpace;
	EXPECT_NE(NoSpace.find("too large"), std::string::npos) << "the system's reason is missing: " << NoSpace;
	EXPECT_EQ(std::filesystem::file_size(State + "/server.pem"), Before);
}
