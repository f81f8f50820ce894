#include "Platform.h"
#include "SqlDatabase.h"

#include <sqlite3.h>

namespace
{
constexpr SqlDialect SqliteDialect = {
	// Writers wait for each other here, not at their first write, where they could no longer.
	"BEGIN IMMEDIATE",
	"BEGIN IMMEDIATE",
	"PRAGMA user_version",
	"PRAGMA user_version = ",
	"((julianday('now') - 2440587.5) * 86400.0)",
	"",
	"",
	false,
};

class SqliteConnection : public SqlConnection
{
public:
	explicit SqliteConnection(const std::string& InPath)
		: Path(InPath)
	{
		constexpr int BusyMilliseconds = 5000;
		// SQLite gives its journals the permissions of the file itself.
		Platform::CreatePrivateFile(Path);
		if (sqlite3_open_v2(Path.c_str(), &Handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK)
		{
			const std::string Reason = Handle ? sqlite3_errmsg(Handle) : "out of memory";
			sqlite3_close(Handle);
			throw std::runtime_error("The database " + Path + " cannot be opened: " + Reason);
		}
		sqlite3_busy_timeout(Handle, BusyMilliseconds);
		// A reader does not wait for a writer, and a commit is one write. What a power failure could lose, a kill
		// cannot.
		try
		{
			RunScript("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL;");
		}
		catch (const std::exception&)
		{
			sqlite3_close(Handle);
			throw;
		}
	}

	~SqliteConnection() override { sqlite3_close(Handle); }

	SqlRows Run(const std::string& Sql, const std::vector<SqlValue>& Parameters) override
	{
		sqlite3_stmt* Prepared = nullptr;
		Check(sqlite3_prepare_v2(Handle, Sql.c_str(), -1, &Prepared, nullptr), SQLITE_OK);
		const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> Statement(Prepared, sqlite3_finalize);
		for (size_t Index = 0; Index < Parameters.size(); ++Index)
		{
			Bind(Prepared, Index, Parameters[Index]);
		}
		SqlRows Rows;
		int Result = SQLITE_ROW;
		while ((Result = sqlite3_step(Prepared)) == SQLITE_ROW)
		{
			Rows.push_back(ReadRow(Prepared));
		}
		Check(Result, SQLITE_DONE);
		return Rows;
	}

	void RunScript(const std::string& Sql) override
	{
		Check(sqlite3_exec(Handle, Sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
	}

private:
	void Check(int Result, int Expected) const
	{
		if (Result != Expected)
		{
			throw std::runtime_error("The database " + Path + " cannot be used: " + sqlite3_errmsg(Handle));
		}
	}

	static void Bind(sqlite3_stmt* Statement, size_t Index, const SqlValue& Value)
	{
		// "$7" is a name to SQLite, and its place the order in which names appear.
		const int Place = sqlite3_bind_parameter_index(Statement, ("$" + std::to_string(Index + 1)).c_str());
		if (const auto* const Text = std::get_if<std::string>(&Value))
		{
			sqlite3_bind_text(Statement, Place, Text->data(), static_cast<int>(Text->size()), SQLITE_TRANSIENT);
		}
		else if (const auto* const Integer = std::get_if<int64_t>(&Value))
		{
			sqlite3_bind_int64(Statement, Place, *Integer);
		}
		else if (const auto* const Real = std::get_if<double>(&Value))
		{
			sqlite3_bind_double(Statement, Place, *Real);
		}
	}

	static SqlRow ReadRow(sqlite3_stmt* Statement)
	{
		std::vector<std::optional<std::string>> Columns(static_cast<size_t>(sqlite3_column_count(Statement)));
		for (size_t Index = 0; Index < Columns.size(); ++Index)
		{
			const int Column = static_cast<int>(Index);
			if (const unsigned char* const Text = sqlite3_column_text(Statement, Column))
			{
				Columns[Index].emplace(
					reinterpret_cast<const char*>(Text), static_cast<size_t>(sqlite3_column_bytes(Statement, Column)));
			}
		}
		return SqlRow(std::move(Columns));
	}

	const std::string Path;
	sqlite3* Handle = nullptr;
};
}

std::unique_ptr<SqlDatabase> SqlDatabase::OpenSqlite(const std::string& Path)
{
	return std::make_unique<SqlDatabase>(SqliteDialect, 1, [Path] { return std::make_unique<SqliteConnection>(Path); });
}
