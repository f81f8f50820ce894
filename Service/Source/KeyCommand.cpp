#include "KeyCommand.h"

#include "KeyRing.h"
#include "ModelConfig.h"
#include "ModelStore.h"

#include <cstdlib>
#include <iomanip>
#include <map>

namespace
{
const char* const KeyUsage = "Usage: kestrel-service keys add NAME [--budget COST] --state FOLDER [--config FILE]\n"
							 "       kestrel-service keys list|remove NAME --state FOLDER [--config FILE]";

double ParseAmount(const std::string& Text)
{
	char* End = nullptr;
	const double Amount = std::strtod(Text.c_str(), &End);
	if (Text.empty() || *End != '\0')
	{
		throw std::runtime_error("--budget wants a number, not '" + Text + "'");
	}
	return Amount;
}

void ListKeys(KeyRing& Keys, std::ostream& Out)
{
	constexpr int NameWidth = 24;
	constexpr int NumberWidth = 14;
	Out << std::left << std::setw(NameWidth) << "name" << std::right << std::setw(NumberWidth) << "budget/month"
		<< std::setw(NumberWidth) << "cost" << std::setw(NumberWidth) << "tokens" << std::setw(NumberWidth)
		<< "requests"
		<< "\n";
	for (const KeyUse& Each : Keys.List())
	{
		Out << std::left << std::setw(NameWidth) << Each.Key.Name << std::right << std::setw(NumberWidth);
		Each.Key.Budget > 0 ? Out << Each.Key.Budget : Out << "none";
		Out << std::setw(NumberWidth) << Each.Cost << std::setw(NumberWidth) << Each.Tokens << std::setw(NumberWidth)
			<< Each.Requests << "\n";
	}
}
}

void RunKeyCommand(const std::vector<std::string>& Words, std::ostream& Out)
{
	std::map<std::string, std::string> Settings = { { "--budget", "0" }, { "--state", "" }, { "--config", "" } };
	std::vector<std::string> Rest;
	for (size_t Index = 0; Index < Words.size(); ++Index)
	{
		const auto Found = Settings.find(Words[Index]);
		if (Found == Settings.end())
		{
			Rest.push_back(Words[Index]);
		}
		else if (++Index < Words.size())
		{
			Found->second = Words[Index];
		}
		else
		{
			throw std::runtime_error(KeyUsage);
		}
	}
	const std::string Action = Rest.empty() ? "" : Rest[0];
	const size_t NumWords = Action == "list" ? 1 : 2;
	if ((Action != "add" && Action != "list" && Action != "remove") || Rest.size() != NumWords ||
		Settings["--state"].empty())
	{
		throw std::runtime_error(KeyUsage);
	}
	const ModelDatabase Where =
		Settings["--config"].empty() ? ModelDatabase() : ModelConfig::LoadDatabase(Settings["--config"]);
	const std::unique_ptr<SqlDatabase> Database = OpenDatabase(Where, Settings["--state"]);
	KeyRing Keys(*Database);
	if (Action == "add")
	{
		const std::string Key = Keys.Add({ Rest[1], ParseAmount(Settings["--budget"]) });
		Out << "The key of " << Rest[1] << ", which is shown only now:\n" << Key << std::endl;
	}
	else if (Action == "list")
	{
		ListKeys(Keys, Out);
	}
	else if (!Keys.Remove(Rest[1]))
	{
		throw std::runtime_error("There is no key named " + Rest[1]);
	}
}
