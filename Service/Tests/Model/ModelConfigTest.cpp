#include "ModelConfig.h"
#include "MutateText.h"
#include "TestFolder.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>

namespace
{
const std::string ServerSection =
	"[server]\nbase_url = \"http://127.0.0.1:8080\"\nformat = \"messages\"\nmodel = \"m\"\n";

std::string ErrorOf(const std::string& Text)
{
	const TestFolder Folder;
	Folder.Write("model.toml", Text);
	try
	{
		ModelConfig::Load(Folder.Path + "/model.toml");
	}
	catch (const std::runtime_error& Error)
	{
		return Error.what();
	}
	return "";
}

ModelConfig Load(const std::string& Text)
{
	const TestFolder Folder;
	Folder.Write("model.toml", Text);
	return ModelConfig::Load(Folder.Path + "/model.toml");
}
}

TEST(ModelConfigTest, ReadsWhatItIsTold)
{
	setenv("MODEL_TEST_KEY", "s3cret", 1);
	const ModelConfig Config = Load(ServerSection + R"(
key_variable = "MODEL_TEST_KEY"
context_tokens = 8192
temperature = 0.2
[timeouts]
first_byte_seconds = 30
[limits.day]
cost = 2.5
[prices]
input = 3.0
output = 15.0
[policy]
auto_continue = ["read_file"]
)");
	EXPECT_EQ(Config.Server.BaseUrl, "http://127.0.0.1:8080/v1");
	EXPECT_EQ(Config.Server.Format, ModelFormat::Messages);
	EXPECT_EQ(Config.Server.Key.Reveal(), "s3cret");
	EXPECT_EQ(Config.Server.ContextTokens, 8192);
	EXPECT_EQ(Config.Server.Temperature, 0.2);
	EXPECT_EQ(Config.Timeouts.FirstByte, 30);
	EXPECT_EQ(Config.PerDay.Cost, 2.5);
	EXPECT_EQ(Config.Prices.CachedInput, 3.0) << "unless it is said otherwise";
	EXPECT_EQ(Config.AutoContinueTools, std::vector<std::string>{ "read_file" });
	EXPECT_GT(Load(ServerSection).AutoContinueTools.size(), 3u) << "reading tools by default";
	unsetenv("MODEL_TEST_KEY");
}

TEST(ModelConfigTest, AnAddressKeepsItsPath)
{
	const std::pair<const char*, const char*> Cases[] = {
		{ "https://models.example", "https://models.example/v1" },
		{ "https://models.example/", "https://models.example/v1" },
		{ "https://models.example/v1/", "https://models.example/v1" },
		{ "https://models.example/openai/v1", "https://models.example/openai/v1" },
	};
	for (const auto& [Given, Expected] : Cases)
	{
		const std::string Text =
			std::string("[server]\nformat = \"messages\"\nmodel = \"m\"\nbase_url = \"") + Given + "\"\n";
		EXPECT_EQ(Load(Text).Server.BaseUrl, Expected);
	}
}

TEST(ModelConfigTest, AnErrorNamesThePlaceAndNeverRepeatsAKey)
{
	const std::string Key = "canary-5309";
	const std::pair<std::string, const char*> Cases[] = {
		{ ServerSection + "api_key = \"" + Key + "\"\n", "model.toml:5: server.api_key does not belong" },
		{ "key = \"" + Key + "\"\n" + ServerSection, ":1: key does not belong" },
		{ ServerSection + "key_variable = \"" + Key + "\"\n", "server.key_variable names an environment variable" },
		{ ServerSection + "key_file = \"/" + Key + "\"\n", "server.key_file names a file" },
		{ ServerSection + "proxy = \"a\nkey = " + Key, "not valid TOML" },
		{ "[server]\nformat = \"messages\"\nmodel = \"m\"\nbase_url = \"https://user:" + Key + "@host/v1\"\n",
			"must have no user" },
		{ "[server]\nbase_url = \"ftp://host\"\n", "server.format must be" },
		{ "[server]\nbase_url = \"ftp://host\"\n", "server.base_url must be" },
		{ "[server]\nbase_url = \"ftp://host\"\n", "server.model is missing" },
		{ ServerSection + "context_tokens = \"many\"\n", ":5: server.context_tokens must be a whole number from 2048" },
		{ ServerSection + "context_tokens = 1.5\n", "must be a whole number" },
		{ ServerSection + "context_tokens = 4096\nmax_output_tokens = 4096\n", "at most half" },
		{ ServerSection + "temperature = nan\n", "server.temperature must be a number" },
		{ ServerSection + "[limits.day]\ntokns = 5\n", ":6: limits.day.tokns is not a member" },
		{ ServerSection + "[policy]\nauto_continue = [\"red_file\"]\n", "no tool: \"red_file\"" },
		{ ServerSection + "[policy]\nauto_continue = [5]\n", "must be an array of strings" },
	};
	for (const auto& [Text, Expected] : Cases)
	{
		const std::string Error = ErrorOf(Text);
		EXPECT_NE(Error.find(Expected), std::string::npos) << Text << "\n" << Error;
		EXPECT_EQ(Error.find(Key), std::string::npos) << Error;
	}
	EXPECT_THROW(ModelConfig::Load("/no/such/file.toml"), std::runtime_error);
}

TEST(ModelConfigTest, ADatabaseIsNamedWithoutItsPassword)
{
	const auto WithDatabase = [](const std::string& Lines) { return ServerSection + "[database]\n" + Lines; };
	EXPECT_EQ(
		Load(WithDatabase("url = \"postgresql://kestrel@db/kestrel\"\nlease_seconds = 3")).Database.LeaseSeconds, 3);
	EXPECT_TRUE(Load(ServerSection).Database.Address.IsEmpty());
	setenv("DATABASE_TEST_URL", "postgresql://kestrel:canary-5309@db/kestrel", 1);
	EXPECT_EQ(Load(WithDatabase("url_variable = \"DATABASE_TEST_URL\"")).Database.Address.Reveal(),
		"postgresql://kestrel:canary-5309@db/kestrel");
	const std::pair<const char*, const char*> Cases[] = {
		{ "url = \"postgresql://kestrel:canary-5309@db/kestrel\"", "must have no password" },
		{ "url = \"postgresql://db/kestrel?password=canary-5309\"", "must have no password" },
		{ "url = \"mysql://db/kestrel\"", "postgresql://user@host/name" },
		{ "url_variable = \"NOT_SET_ANYWHERE\"", "postgresql://user@host/name" },
		{ "url = \"postgresql://db/k\"\nurl_variable = \"DATABASE_TEST_URL\"", "exclude each other" },
		{ "lease_seconds = 0", "a number from 0.5" },
	};
	for (const auto& [Lines, Expected] : Cases)
	{
		const std::string Error = ErrorOf(WithDatabase(Lines));
		EXPECT_NE(Error.find(Expected), std::string::npos) << Error;
		EXPECT_EQ(Error.find("canary"), std::string::npos) << Error;
	}
	unsetenv("DATABASE_TEST_URL");
}

TEST(ModelConfigTest, ADamagedConfigurationIsReadOrReported)
{
	std::string Text;
	for (const auto& Entry : std::filesystem::directory_iterator(SERVICE_EXAMPLES))
	{
		std::ifstream File(Entry.path());
		std::ostringstream Whole;
		Whole << File.rdbuf();
		Text += Whole.str();
	}
	Text = ServerSection + "[limits]\nday = { cost = 2.5 }\n[log]\ncontent = true\n" + Text.substr(0, 1500);
	const TestFolder Folder;
	FTextMutator Mutator("[]{}=\"'.#,\n0e-+_trufalsn\xc3\xff");
	for (int Round = 0; Round < 1000; ++Round)
	{
		Folder.Write("model.toml", Mutator.Mutate(Round % 2 == 0 ? Text : ServerSection));
		try
		{
			ModelConfig::Load(Folder.Path + "/model.toml");
		}
		catch (const std::runtime_error& Error)
		{
			ASSERT_NE(std::string(Error.what()), "");
		}
	}
}
