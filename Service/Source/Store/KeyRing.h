#pragma once

#include "SqlDatabase.h"

#include <chrono>
#include <map>

/** An API key by its name. The key itself is kept nowhere: it is shown once, and only its hash is stored. */
struct NamedKey
{
	std::string Name;
	double Budget = 0; // of a month (UTC), in the currency of the prices; 0 for no limit
};

struct KeyUse
{
	NamedKey Key;
	int64_t Requests = 0; // to the model, this month
	int64_t Tokens = 0;
	double Cost = 0;
};

/** The named API keys in a database. Several threads use it. Errors are std::runtime_error. */
class KeyRing
{
public:
	/** Removing a key takes effect everywhere after this. */
	static constexpr std::chrono::seconds Remembered{ 5 };

	explicit KeyRing(SqlDatabase& InDatabase)
		: Database(InDatabase)
	{
	}

	/** @return the key, which cannot be shown again */
	std::string Add(const NamedKey& Key);
	/** @return false when there is none of that name */
	bool Remove(const std::string& Name);
	/** By name, with what each has used this month. */
	std::vector<KeyUse> List();

	bool HasKeys();
	/** The name of a key as a client sent it. */
	std::optional<std::string> Find(const std::string& Key);
	/** @return a message for the user when the key's budget is used up; empty otherwise */
	std::string FindReachedBudget(const std::string& Name);

private:
	/** All names by hash: there are as many as a team has members. */
	std::map<std::string, std::string> GetNames();

	SqlDatabase& Database;
	std::mutex Mutex;
	std::map<std::string, std::string> Names;
	std::optional<std::chrono::steady_clock::time_point> ReadAt;
};

/** The first day of this month (UTC), since 1970. */
int64_t GetFirstDayOfMonth();
