#pragma once

#include "TestFolder.h"

#include <memory>
#include <string>

/** A PostgreSQL server of this program's own, started on first use and stopped at its end. */
class TestPostgres
{
public:
	/** The address of a new, empty database. */
	static std::string MakeDatabase();
};

/** A place to keep conversations: what each kind of database needs to be opened. */
class TestDatabase
{
public:
	enum class Kind
	{
		Sqlite,
		Postgres,
	};

	explicit TestDatabase(Kind InKind)
		: Address(InKind == Kind::Postgres ? TestPostgres::MakeDatabase() : "")
	{
	}

	std::unique_ptr<class SqlDatabase> Open() const;
	const std::string& GetFolder() const { return Folder.Path; }

	const std::string Address; // empty for a file in the folder

private:
	const TestFolder Folder;
};

inline const char* NameOf(TestDatabase::Kind Kind)
{
	return Kind == TestDatabase::Kind::Sqlite ? "Sqlite" : "Postgres";
}
