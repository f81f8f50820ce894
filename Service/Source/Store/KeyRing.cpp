#include "KeyRing.h"

#include "RandomId.h"

#include <algorithm>
#include <ctime>
#include <openssl/evp.h>
#include <sstream>

namespace
{
constexpr size_t LongestName = 64;

/** Without salt and stretching, which protect what people make up: a key has 256 random bits. */
std::string HashOf(const std::string& Key)
{
	unsigned char Digest[EVP_MAX_MD_SIZE];
	unsigned NumBytes = 0;
	if (EVP_Digest(Key.data(), Key.size(), Digest, &NumBytes, EVP_sha256(), nullptr) != 1)
	{
		throw std::runtime_error("A key cannot be hashed");
	}
	std::ostringstream Hex;
	Hex << std::hex;
	for (unsigned Index = 0; Index < NumBytes; ++Index)
	{
		Hex << (Digest[Index] >> 4) << (Digest[Index] & 15);
	}
	return Hex.str();
}

void CheckName(const std::string& Name)
{
	const bool bGood = !Name.empty() && Name.size() <= LongestName && std::all_of(Name.begin(), Name.end(), [](char C) {
		return (C >= 'a' && C <= 'z') || (C >= 'A' && C <= 'Z') || (C >= '0' && C <= '9') || C == '.' || C == '_' ||
			   C == '-';
	});
	if (!bGood)
	{
		throw std::runtime_error("A key's name has up to 64 letters, digits, dots, hyphens and underscores");
	}
}

std::string FormatAmount(double Amount)
{
	std::ostringstream Text;
	Text.precision(12);
	Text << Amount;
	return Text.str();
}
}

int64_t GetFirstDayOfMonth()
{
	constexpr int64_t SecondsOfADay = 24 * 60 * 60;
	const int64_t Today = std::time(nullptr) / SecondsOfADay;
	const std::chrono::year_month_day Date{ std::chrono::sys_days{ std::chrono::days{ Today } } };
	const std::chrono::sys_days First = Date.year() / Date.month() / 1;
	return First.time_since_epoch().count();
}

std::string KeyRing::Add(const NamedKey& Key)
{
	CheckName(Key.Name);
	if (!(Key.Budget >= 0 && Key.Budget <= 1e9))
	{
		throw std::runtime_error("A budget is a number from 0 to 1000000000");
	}
	const std::string Made = "kestrel-" + NewRandomId() + NewRandomId();
	const SqlRows Added = Database.Run("INSERT INTO keys (name, hash, budget, created) VALUES ($1, $2, $3, $4) ON "
									   "CONFLICT (name) DO NOTHING RETURNING name",
		{ Key.Name, HashOf(Made), Key.Budget, static_cast<int64_t>(std::time(nullptr)) });
	if (Added.empty())
	{
		throw std::runtime_error("There is a key named " + Key.Name + " already: remove it first");
	}
	return Made;
}

bool KeyRing::Remove(const std::string& Name)
{
	return !Database.Run("DELETE FROM keys WHERE name = $1 RETURNING name", { Name }).empty();
}

std::vector<KeyUse> KeyRing::List()
{
	std::vector<KeyUse> Keys;
	for (const SqlRow& Row : Database.Run("SELECT keys.name, keys.budget, COALESCE(SUM(requests), 0), "
										  "COALESCE(SUM(tokens), 0), COALESCE(SUM(cost), 0) FROM keys LEFT JOIN "
										  "key_usage ON key_usage.key_name = keys.name AND key_usage.day >= $1 GROUP "
										  "BY keys.name, keys.budget ORDER BY keys.name",
			 { GetFirstDayOfMonth() }))
	{
		Keys.push_back({ { Row.GetText(0), Row.GetReal(1) }, Row.GetInteger(2), Row.GetInteger(3), Row.GetReal(4) });
	}
	return Keys;
}

std::map<std::string, std::string> KeyRing::GetNames()
{
	const std::lock_guard Lock(Mutex);
	const auto Now = std::chrono::steady_clock::now();
	if (!ReadAt || Now - *ReadAt > Remembered)
	{
		std::map<std::string, std::string> Read;
		for (const SqlRow& Row : Database.Run("SELECT hash, name FROM keys"))
		{
			Read[Row.GetText(0)] = Row.GetText(1);
		}
		Names = std::move(Read);
		ReadAt = Now;
	}
	return Names;
}

bool KeyRing::HasKeys()
{
	return !GetNames().empty();
}

std::optional<std::string> KeyRing::Find(const std::string& Key)
{
	const std::map<std::string, std::string> All = GetNames();
	const auto Found = All.find(HashOf(Key));
	return Found == All.end() ? std::nullopt : std::optional(Found->second);
}

std::string KeyRing::FindReachedBudget(const std::string& Name)
{
	const SqlRows Found =
		Database.Run("SELECT budget, (SELECT COALESCE(SUM(cost), 0) FROM key_usage WHERE key_name = $1 "
					 "AND day >= $2) FROM keys WHERE name = $1",
			{ Name, GetFirstDayOfMonth() });
	if (Found.empty() || Found[0].GetReal(0) <= 0 || Found[0].GetReal(1) < Found[0].GetReal(0))
	{
		return "";
	}
	return "The budget of " + FormatAmount(Found[0].GetReal(0)) + " per month of the key " + Name +
		   " is used up. Continue next month (UTC), or ask whoever runs the service to raise it.";
}
