#include "Sqlite.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <stdexcept>
#include <unistd.h>

namespace
{
/** SQLite gives its journals the permissions of the file itself. */
void CreatePrivateFile(const std::string& Path)
{
	const int File = open(Path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
	if (File >= 0)
	{
		close(File);
	}
}
}

SqliteDatabase::SqliteDatabase(const std::string& InPath)
	: Path(InPath)
{
	constexpr int BusyMilliseconds = 5000;
	CreatePrivateFile(Path);
	if (sqlite3_open_v2(Path.c_str(), &Handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK)
	{
		const std::string Reason = Handle ? sqlite3_errmsg(Handle) : "out of memory";
		sqlite3_close(Handle);
		throw std::runtime_error("The database " + Path + " cannot be opened: " + Reason);
	}
	sqlite3_busy_timeout(Handle, BusyMilliseconds);
}

SqliteDatabase::~SqliteDatabase()
{
	sqlite3_close(Handle);
}

void SqliteDatabase::Fail(const std::string& What) const
{
	throw std::runtime_error("The database " + Path + " cannot " + What + ": " + sqlite3_errmsg(Handle));
}

void SqliteDatabase::Execute(const std::string& Sql)
{
	if (sqlite3_exec(Handle, Sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
	{
		Fail("be used");
	}
}

SqliteStatement::SqliteStatement(SqliteDatabase& InDatabase, const std::string& Sql)
	: Database(InDatabase)
{
	if (sqlite3_prepare_v2(Database.Get(), Sql.c_str(), -1, &Handle, nullptr) != SQLITE_OK)
	{
		Database.Fail("be used");
	}
}

SqliteStatement::~SqliteStatement()
{
	sqlite3_finalize(Handle);
}

SqliteStatement& SqliteStatement::Bind(int Parameter, const std::string& Text)
{
	sqlite3_bind_text(Handle, Parameter, Text.data(), static_cast<int>(Text.size()), SQLITE_TRANSIENT);
	return *this;
}

SqliteStatement& SqliteStatement::Bind(int Parameter, int64_t Number)
{
	sqlite3_bind_int64(Handle, Parameter, Number);
	return *this;
}

SqliteStatement& SqliteStatement::Bind(int Parameter, double Number)
{
	sqlite3_bind_double(Handle, Parameter, Number);
	return *this;
}

bool SqliteStatement::Step()
{
	const int Result = sqlite3_step(Handle);
	if (Result != SQLITE_ROW && Result != SQLITE_DONE)
	{
		Database.Fail("be read or written");
	}
	return Result == SQLITE_ROW;
}

std::optional<std::string> SqliteStatement::GetText(int Column) const
{
	const unsigned char* const Text = sqlite3_column_text(Handle, Column);
	return Text ? std::optional(std::string(
					  reinterpret_cast<const char*>(Text), static_cast<size_t>(sqlite3_column_bytes(Handle, Column))))
				: std::nullopt;
}

int64_t SqliteStatement::GetInteger(int Column) const
{
	return sqlite3_column_int64(Handle, Column);
}

double SqliteStatement::GetReal(int Column) const
{
	return sqlite3_column_double(Handle, Column);
}
