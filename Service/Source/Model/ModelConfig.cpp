#include "ModelConfig.h"

#include "ConfigReader.h"
#include "KeyFile.h"
#include "ToolCatalog.h"

#include <cstdlib>
#include <stdexcept>

namespace
{
constexpr double LongestSeconds = 24 * 60 * 60;
constexpr int64_t MostOfAnything = 1'000'000'000'000;

bool StartsWith(const std::string& Text, const char* Prefix)
{
	return Text.rfind(Prefix, 0) == 0;
}

void ReadUrl(ConfigReader& Reader, ModelServer& Server)
{
	std::string& Url = Server.BaseUrl;
	Reader.Read("server.base_url", Url);
	if (!StartsWith(Url, "http://") && !StartsWith(Url, "https://"))
	{
		Reader.AddError("server.base_url", "must be the server's address, such as http://127.0.0.1:8080/v1");
		return;
	}
	const size_t HostAt = Url.find("//") + 2;
	const size_t PathAt = Url.find('/', HostAt);
	const std::string Host = Url.substr(HostAt, PathAt == std::string::npos ? PathAt : PathAt - HostAt);
	if (Host.find('@') != std::string::npos || Url.find_first_of("?# \t\r\n") != std::string::npos)
	{
		Reader.AddError("server.base_url", "must have no user, password, query or spaces in it");
	}
	while (Url.back() == '/')
	{
		Url.pop_back();
	}
	// Both formats' paths begin with a version, which hosts put in different places: only an address without any path
	// gets the usual one.
	if (PathAt == std::string::npos || PathAt >= Url.size())
	{
		Url += "/v1";
	}
}

void ReadFormat(ConfigReader& Reader, ModelFormat& Format)
{
	std::string Name;
	Reader.Read("server.format", Name);
	if (Name != "chat-completions" && Name != "messages")
	{
		Reader.AddError("server.format", "must be \"chat-completions\" or \"messages\"");
	}
	Format = Name == "messages" ? ModelFormat::Messages : ModelFormat::ChatCompletions;
}

/** A header takes no line break, and nobody means an empty key. */
bool IsUsableKey(const std::string& Key)
{
	return !Key.empty() && Key.find_first_of("\r\n") == std::string::npos && Key.find('\0') == std::string::npos;
}

void ReadModelKey(ConfigReader& Reader, ModelServer& Server)
{
	std::string Variable;
	std::string File;
	Reader.Read("server.key_variable", Variable);
	Reader.Read("server.key_file", File);
	if (!Variable.empty() && !File.empty())
	{
		Reader.AddError("server.key_file", "and server.key_variable exclude each other");
		return;
	}
	if (!Variable.empty())
	{
		const char* const Value = std::getenv(Variable.c_str());
		Server.Key = Secret(Value ? Value : "");
		Server.KeySource = "the environment variable that server.key_variable names";
		if (!IsUsableKey(Server.Key.Reveal()))
		{
			Reader.AddError("server.key_variable", "names an environment variable that is not set or holds no key");
		}
	}
	if (!File.empty())
	{
		Server.KeySource = "the file that server.key_file names";
		try
		{
			Server.Key = Secret(ReadKeyFile(File));
		}
		catch (const std::runtime_error&)
		{
			Reader.AddError("server.key_file", "names a file that cannot be read or is empty");
		}
	}
}

/** An address with a password is as secret as a key. */
void ReadDatabase(ConfigReader& Reader, ModelDatabase& Database)
{
	constexpr double ShortestLease = 0.5;
	std::string Url;
	std::string Variable;
	Reader.Read("database.url", Url);
	Reader.Read("database.url_variable", Variable);
	Reader.Read("database.lease_seconds", Database.LeaseSeconds, ShortestLease, LongestSeconds);
	if (!Url.empty() && !Variable.empty())
	{
		Reader.AddError("database.url", "and database.url_variable exclude each other");
		return;
	}
	const size_t UserAt = Url.find("//");
	const size_t HostAt = Url.find('@');
	const bool bPassword = UserAt != std::string::npos && HostAt != std::string::npos && Url.find(':', UserAt) < HostAt;
	if (bPassword || Url.find("password=") != std::string::npos)
	{
		Reader.AddError("database.url",
			"must have no password in it: name an environment variable that holds the whole "
			"address in database.url_variable");
	}
	if (!Variable.empty())
	{
		const char* const Value = std::getenv(Variable.c_str());
		Url = Value ? Value : "";
	}
	if (!Variable.empty() || !Url.empty())
	{
		if (!StartsWith(Url, "postgresql://") && !StartsWith(Url, "postgres://"))
		{
			Reader.AddError(Variable.empty() ? "database.url" : "database.url_variable",
				"must give an address such as postgresql://user@host/name");
		}
		Database.Address = Secret(Url);
	}
}

void ReadServer(ConfigReader& Reader, ModelServer& Server)
{
	constexpr int MostTokens = 100'000'000;
	ReadUrl(Reader, Server);
	ReadFormat(Reader, Server.Format);
	ReadModelKey(Reader, Server);
	Reader.Read("server.model", Server.Model);
	if (Server.Model.empty())
	{
		Reader.AddError("server.model", "is missing: the name of the model, as the server calls it");
	}
	Reader.Read("server.context_tokens", Server.ContextTokens, 2048, MostTokens);
	Reader.Read("server.max_output_tokens", Server.MaxOutputTokens, 16, MostTokens);
	if (Server.MaxOutputTokens > Server.ContextTokens / 2)
	{
		Reader.AddError("server.max_output_tokens", "must be at most half of server.context_tokens");
	}
	Reader.Read("server.output_tokens_field", Server.OutputTokensField);
	if (Server.OutputTokensField != "max_tokens" && Server.OutputTokensField != "max_completion_tokens")
	{
		Reader.AddError("server.output_tokens_field", "must be \"max_tokens\" or \"max_completion_tokens\"");
	}
	Reader.Read("server.api_version", Server.ApiVersion);
	if (Reader.Has("server.temperature"))
	{
		Reader.Read("server.temperature", Server.Temperature.emplace(0.0), 0.0, 2.0);
	}
	Reader.Read("server.proxy", Server.Proxy);
	Reader.Read("server.authority_file", Server.AuthorityFile);
}

void ReadTimeouts(ConfigReader& Reader, ModelTimeouts& Timeouts)
{
	const std::pair<const char*, double*> Fields[] = {
		{ "timeouts.connect_seconds", &Timeouts.Connect },
		{ "timeouts.first_byte_seconds", &Timeouts.FirstByte },
		{ "timeouts.between_bytes_seconds", &Timeouts.BetweenBytes },
		{ "timeouts.request_seconds", &Timeouts.Request },
		{ "timeouts.retry_seconds", &Timeouts.Retry },
		{ "timeouts.unpolled_seconds", &Timeouts.Unpolled },
	};
	for (const auto& [Path, Target] : Fields)
	{
		Reader.Read(Path, *Target, 0.05, LongestSeconds);
	}
}

void ReadLimits(ConfigReader& Reader, const std::string& Table, ModelLimits& Limits)
{
	Reader.Read(Table + ".requests", Limits.Requests, int64_t(0), MostOfAnything);
	Reader.Read(Table + ".tokens", Limits.Tokens, int64_t(0), MostOfAnything);
	Reader.Read(Table + ".minutes", Limits.Minutes, 0.0, LongestSeconds);
	Reader.Read(Table + ".cost", Limits.Cost, 0.0, 1e9);
}

void ReadPolicy(ConfigReader& Reader, ModelConfig& Config)
{
	Config.AutoContinueTools = ToolCatalog::Get().ReadOnlyTools();
	Reader.Read("policy.auto_continue", Config.AutoContinueTools);
	for (const std::string& Name : Config.AutoContinueTools)
	{
		if (!ToolCatalog::Get().Find(Name))
		{
			Reader.AddError("policy.auto_continue", "has a name that is no tool: \"" + Name + "\"");
		}
	}
	Reader.Read("policy.result_tokens", Config.ResultTokens, 200, 10'000'000);
	Reader.Read("policy.tree_tokens", Config.TreeTokens, 100, 10'000'000);
}
}

ModelConfig ModelConfig::Load(const std::string& Path)
{
	constexpr double HighestPrice = 1e6;
	ConfigReader Reader(Path);
	ModelConfig Config;
	ReadServer(Reader, Config.Server);
	ReadTimeouts(Reader, Config.Timeouts);
	Reader.Read("retries.attempts", Config.Retries.Attempts, 1, 20);
	Reader.Read("retries.first_delay_seconds", Config.Retries.FirstDelaySeconds, 0.0, 60.0);
	Reader.Read("retries.longest_delay_seconds", Config.Retries.LongestDelaySeconds, 0.0, 600.0);
	ReadLimits(Reader, "limits.conversation", Config.PerConversation);
	ReadLimits(Reader, "limits.day", Config.PerDay);
	Reader.Read("prices.input", Config.Prices.Input, 0.0, HighestPrice);
	Config.Prices.CachedInput = Config.Prices.Input;
	Reader.Read("prices.cached_input", Config.Prices.CachedInput, 0.0, HighestPrice);
	Reader.Read("prices.output", Config.Prices.Output, 0.0, HighestPrice);
	Reader.Read("limits.key.turns_per_minute", Config.TurnsPerMinute, int64_t(0), MostOfAnything);
	Reader.Read("log.content", Config.bLogContent);
	ReadDatabase(Reader, Config.Database);
	ReadPolicy(Reader, Config);
	Reader.Finish();
	return Config;
}

ModelDatabase ModelConfig::LoadDatabase(const std::string& Path)
{
	ConfigReader Reader(Path);
	ModelDatabase Database;
	ReadDatabase(Reader, Database);
	Reader.FinishPart();
	return Database;
}
