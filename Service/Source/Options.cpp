#include "Options.h"

#include "KeyFile.h"

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <map>
#include <stdexcept>

namespace
{
int64_t ParseNumber(const std::string& Name, const std::string& Text, int64_t Highest)
{
	char* End = nullptr;
	const int64_t Number = std::strtoll(Text.c_str(), &End, 10);
	if (Text.empty() || *End != '\0' || Number < 0 || Number > Highest)
	{
		throw std::runtime_error(
			Name + " wants a number from 0 to " + std::to_string(Highest) + ", not '" + Text + "'");
	}
	return Number;
}

/** Each responder and what it cannot do without. */
void CheckResponder(const Options& Settings)
{
	const struct
	{
		const char* Name;
		const std::string* Needed;
		const char* Option;
	} Responders[] = {
		{ "offline", nullptr, "" },
		{ "script", &Settings.ScriptFolder, "--scripts" },
		{ "model", &Settings.ConfigFile, "--config" },
	};
	for (const auto& Each : Responders)
	{
		if (Settings.Responder != Each.Name)
		{
			continue;
		}
		if (Each.Needed && Each.Needed->empty())
		{
			throw std::runtime_error("The responder '" + Settings.Responder + "' needs " + Each.Option);
		}
		return;
	}
	throw std::runtime_error("There is no responder '" + Settings.Responder + "'");
}
}

bool Options::IsLoopback() const
{
	return Listen == "localhost" || Listen == "::1" || Listen.rfind("127.", 0) == 0;
}

const char* Options::Usage()
{
	return "Usage: kestrel-service --state FOLDER [options]\n"
		   "  --port N             port; 0, the default, takes a free one\n"
		   "  --listen ADDRESS     127.0.0.1 unless given; others only if there are keys\n"
		   "  --host-name NAME     a further name that the certificate is for; may be repeated\n"
		   "  --ready-file FILE    written as JSON when the service can be reached\n"
		   "  --key-file FILE      refuse requests whose x-api-key is not the file's content (401); without it, the\n"
		   "                       variable KESTREL_SERVICE_KEY may hold the key\n"
		   "  --operator-key-file FILE\n"
		   "                       turns on the operator page at / and /metrics for those who have the file's content;\n"
		   "                       without it, the variable KESTREL_OPERATOR_KEY may hold the key\n"
		   "  --max-body BYTES     refuse larger bodies (413)\n"
		   "  --request-time N     seconds in which a request has to arrive, 60 unless given\n"
		   "  --responder KIND     'offline' (default), 'script' or 'model'\n"
		   "  --scripts FOLDER     the conversations of 'script'\n"
		   "  --config FILE        the model server of 'model', as TOML\n"
		   "\n"
		   "       kestrel-service check-config FILE\n"
		   "  asks the model server for a word and a tool call, and prints what works\n"
		   "\n"
		   "       kestrel-service keys add NAME [--budget COST] --state FOLDER [--config FILE]\n"
		   "       kestrel-service keys list|remove NAME --state FOLDER [--config FILE]\n"
		   "  the API keys of 'model', each with a budget per month\n"
		   "\n"
		   "       kestrel-service connect --project DIR --state FOLDER [--port N] [--yes]\n"
		   "       kestrel-service disconnect --project DIR\n"
		   "  makes a project use the service on this machine, and no longer\n";
}

Options Options::Parse(int ArgC, char** ArgV)
{
	constexpr int64_t HighestPort = 65535;
	constexpr int64_t LargestBody = int64_t(1) << 32;
	constexpr int64_t LongestRequest = 24 * 60 * 60;
	Options Result;
	const char* const KeyFromEnvironment = std::getenv(KeyVariable);
	Result.ApiKey = KeyFromEnvironment ? KeyFromEnvironment : "";
	const char* const OperatorKeyFromEnvironment = std::getenv(OperatorKeyVariable);
	Result.OperatorKey = OperatorKeyFromEnvironment ? OperatorKeyFromEnvironment : "";
	const std::map<std::string, std::function<void(const std::string&)>> Setters = {
		{ "--state", [&](const std::string& Value) { Result.StateFolder = Value; } },
		{ "--ready-file", [&](const std::string& Value) { Result.ReadyFile = Value; } },
		{ "--responder", [&](const std::string& Value) { Result.Responder = Value; } },
		{ "--scripts", [&](const std::string& Value) { Result.ScriptFolder = Value; } },
		{ "--config", [&](const std::string& Value) { Result.ConfigFile = Value; } },
		{ "--key-file", [&](const std::string& Value) { Result.ApiKey = ReadKeyFile(Value); } },
		{ "--operator-key-file", [&](const std::string& Value) { Result.OperatorKey = ReadKeyFile(Value); } },
		{ "--listen", [&](const std::string& Value) { Result.Listen = Value; } },
		{ "--host-name", [&](const std::string& Value) { Result.HostNames.push_back(Value); } },
		{ "--port",
			[&](const std::string& Value) {
				Result.Port = static_cast<int>(ParseNumber("--port", Value, HighestPort));
			} },
		{ "--request-time",
			[&](const std::string& Value) {
				Result.RequestSeconds = static_cast<double>(ParseNumber("--request-time", Value, LongestRequest));
			} },
		{ "--max-body",
			[&](const std::string& Value) {
				Result.MaxBodyBytes = static_cast<size_t>(ParseNumber("--max-body", Value, LargestBody));
			} },
	};
	for (int Index = 1; Index < ArgC; Index += 2)
	{
		const auto Setter = Setters.find(ArgV[Index]);
		if (Setter == Setters.end())
		{
			throw std::runtime_error(std::string("Unknown option ") + ArgV[Index]);
		}
		if (Index + 1 >= ArgC)
		{
			throw std::runtime_error(std::string(ArgV[Index]) + " wants a value");
		}
		Setter->second(ArgV[Index + 1]);
	}
	if (Result.StateFolder.empty())
	{
		throw std::runtime_error("--state is needed");
	}
	CheckResponder(Result);
	return Result;
}
