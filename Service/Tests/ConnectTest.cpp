#include "ConnectCommand.h"
#include "TestFolder.h"

#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <sys/stat.h>

namespace
{
class ConnectTest : public testing::Test
{
protected:
	ConnectTest()
	{
		std::filesystem::create_directories(Config);
		Folder.Write("Game/Game.uproject", "{}");
	}

	/** @return what was printed */
	std::string Run(const std::vector<std::string>& Words, const std::string& Typed = "")
	{
		std::istringstream In(Typed);
		std::ostringstream Out;
		std::vector<std::string> All = { Words[0], "--project", Folder.Path + "/Game" };
		All.insert(All.end(), Words.begin() + 1, Words.end());
		try
		{
			RunConnectCommand(All, In, Out);
		}
		catch (const std::runtime_error& Error)
		{
			return std::string("error: ") + Error.what();
		}
		return Out.str();
	}
	std::string Connect(const std::string& Typed = "y\n")
	{
		return Run({ "connect", "--state", Folder.Path + "/state", "--port", "9443" }, Typed);
	}

	std::string Read(const std::string& Name) const
	{
		std::ifstream File(Config + "/" + Name, std::ios::binary);
		std::ostringstream Text;
		Text << File.rdbuf();
		return File.is_open() ? Text.str() : "(none)";
	}
	void Write(const std::string& Name, const std::string& Text) const { Folder.Write("Game/Config/" + Name, Text); }

	const TestFolder Folder;
	const std::string Config = Folder.Path + "/Game/Config";
};
}

TEST_F(ConnectTest, DisconnectRestoresEveryByte)
{
	const std::string Cases[] = { "(none)", "", "[A]\nB=1\n", "[A]\r\nB=1\r\n", "[A]\nB=1", "[A]\r\nB=1\r\nC=2",
		"\xEF\xBB\xBF[Kestrel]\nOther=1\n", "; [SSL]\n;DebuggingCertificatePath=x\n[URL]\nStage=1\n" };
	for (const std::string& Before : Cases)
	{
		for (const char* Name : { "DefaultPlugin.ini", "DefaultEngine.ini" })
		{
			Before == "(none)" ? (void)0 : Write(Name, Before);
		}
		Connect();
		EXPECT_NE(Read("DefaultPlugin.ini").find("DevApiUrl=localhost:9443/v1"), std::string::npos);
		EXPECT_NE(Read("DefaultEngine.ini").find("DebuggingCertificatePath=" + Folder.Path + "/state/authority.pem"),
			std::string::npos);
		const std::string Once = Read("DefaultPlugin.ini");
		Connect();
		EXPECT_EQ(Read("DefaultPlugin.ini"), Once) << "connected twice";
		EXPECT_NE(Run({ "disconnect" }).find("- Stage=Dev"), std::string::npos);
		EXPECT_EQ(Read("DefaultPlugin.ini"), Before);
		EXPECT_EQ(Read("DefaultEngine.ini"), Before);
		EXPECT_EQ(Run({ "disconnect" }), "The project is not connected.\n");
		std::filesystem::remove_all(Config);
		std::filesystem::create_directories(Config);
	}
}

TEST_F(ConnectTest, LinesOfOthersStayAroundTheBlock)
{
	Write("DefaultPlugin.ini", "[A]\nB=1\n");
	Connect();
	Write("DefaultPlugin.ini", Read("DefaultPlugin.ini") + "[Later]\nC=2\n");
	Run({ "disconnect" });
	EXPECT_EQ(Read("DefaultPlugin.ini"), "[A]\nB=1\n[Later]\nC=2\n");
}

TEST_F(ConnectTest, NothingIsWrittenWithoutConsentOrOverAnotherService)
{
	const std::string Shown = Connect("n\n");
	EXPECT_NE(Shown.find("+ Stage=Dev"), std::string::npos) << Shown;
	EXPECT_EQ(Read("DefaultPlugin.ini"), "(none)");
	Connect("");
	EXPECT_EQ(Read("DefaultPlugin.ini"), "(none)");

	for (const char* Taken : { "[kestrel]\nstage = Sandbox\n", "[Kestrel]\r\n+Stage=Dev\r\n",
			 "\xEF\xBB\xBF[Kestrel]\nStage=Sandbox\n", "[Kestrel]\rStage=Sandbox\r" })
	{
		Write("DefaultPlugin.ini", Taken);
		EXPECT_NE(Connect().find("sets Stage in [Kestrel] already"), std::string::npos);
		EXPECT_EQ(Read("DefaultPlugin.ini"), Taken);
	}
	Write("DefaultPlugin.ini", "");
	Write("DefaultEngine.ini", "[SSL]\nDebuggingCertificatePath=/mine.pem\n");
	EXPECT_NE(Connect().find("sets DebuggingCertificatePath"), std::string::npos);
	EXPECT_EQ(Read("DefaultPlugin.ini"), "") << "not half of it";
	Write("DefaultEngine.ini", std::string("\xFF\xFE[\0", 4));
	EXPECT_NE(Connect().find("UTF-16"), std::string::npos);
	std::filesystem::remove(Config + "/DefaultEngine.ini");
	std::filesystem::permissions(Config + "/DefaultPlugin.ini", std::filesystem::perms::owner_read);
	EXPECT_NE(Connect().find("read-only"), std::string::npos);
	EXPECT_NE(Run({ "connect", "--state", "x", "--port", "0" }).find("Usage"), std::string::npos);
	std::filesystem::remove(Folder.Path + "/Game/Game.uproject");
	EXPECT_NE(Connect().find("no .uproject"), std::string::npos);
}

TEST_F(ConnectTest, OnlyWhatCanBeRestoredIsWritten)
{
	const std::string Path = Config + "/DefaultPlugin.ini";
	std::filesystem::create_symlink(Folder.Path + "/nowhere", Path);
	EXPECT_NE(Connect().find("is a link that leads nowhere"), std::string::npos);
	EXPECT_TRUE(std::filesystem::is_symlink(Path));
	std::filesystem::remove(Path);
	std::filesystem::create_directory(Path);
	EXPECT_NE(Connect().find("is not a file"), std::string::npos);
	std::filesystem::remove(Path);
	ASSERT_EQ(mkfifo(Path.c_str(), 0600), 0);
	EXPECT_NE(Connect().find("is not a file"), std::string::npos);
	std::filesystem::remove(Path);
	const std::string Folded = Run({ "connect", "--state", Folder.Path + "/a\n[Evil]\nB=1", "--yes" });
	EXPECT_NE(Folded.find("line break"), std::string::npos) << Folded;
	EXPECT_EQ(Read("DefaultEngine.ini"), "(none)");
}
