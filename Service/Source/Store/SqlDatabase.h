#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

using SqlValue = std::variant<std::nullptr_t, int64_t, double, std::string>;

/** The columns of a row as text, as every database can give them; nothing for NULL. */
class SqlRow
{
public:
	explicit SqlRow(std::vector<std::optional<std::string>> InColumns)
		: Columns(std::move(InColumns))
	{
	}

	bool IsNull(size_t Column) const { return !Columns[Column]; }
	/** Empty for NULL. */
	std::string GetText(size_t Column) const { return Columns[Column].value_or(""); }
	int64_t GetInteger(size_t Column) const;
	double GetReal(size_t Column) const;

private:
	std::vector<std::optional<std::string>> Columns;
};

using SqlRows = std::vector<SqlRow>;

/** What differs between the databases, as SQL. */
struct SqlDialect
{
	const char* Begin;
	/** Begins a transaction in which no other process migrates. */
	const char* BeginMigration;
	const char* GetVersion;
	const char* SetVersion; // with the number after it
	const char* Now;        // seconds since 1970, by the database's clock
	const char* LockRow;    // after a SELECT of rows that will be changed: waits for others
	const char* ClaimRow;   // after a SELECT: passes over rows that others hold
	bool bShared;           // whether several processes use it
};

/** A connection was lost that had been there. What was asked may be asked again, on another. */
class SqlConnectionLost : public std::runtime_error
{
	using runtime_error::runtime_error;
};

/** One connection, for one thread at a time. Errors are std::runtime_error. */
class SqlConnection
{
public:
	virtual ~SqlConnection() = default;
	/** One statement; its parameters are $1, $2 and so on. */
	virtual SqlRows Run(const std::string& Sql, const std::vector<SqlValue>& Parameters = {}) = 0;
	/** Several statements without parameters and results. */
	virtual void RunScript(const std::string& Sql) = 0;
};

/** A database that several threads use: each transaction has a connection of its own. */
class SqlDatabase
{
public:
	using ConnectFunction = std::function<std::unique_ptr<SqlConnection>()>;

	SqlDatabase(const SqlDialect& InDialect, size_t InMaxConnections, ConnectFunction InConnect);

	/** A file, created for its owner only if there is none. */
	static std::unique_ptr<SqlDatabase> OpenSqlite(const std::string& Path);
	/** @param Address  as libpq takes it, postgresql://user@host/name */
	static std::unique_ptr<SqlDatabase> OpenPostgres(const std::string& Address);

	const SqlDialect& GetDialect() const { return Dialect; }
	/** Runs all of the work or nothing of it; again when the connection is lost, so it must bear to be run twice. */
	void Transact(const std::function<void(SqlConnection&)>& Work);
	/** One statement. */
	SqlRows Run(const std::string& Sql, const std::vector<SqlValue>& Parameters = {});
	/**
	 * Brings the schema from any version to the newest, the number of migrations.
	 *
	 * @throws std::runtime_error when a newer version of the service wrote it
	 */
	void Migrate(const std::vector<const char*>& Migrations);

private:
	std::unique_ptr<SqlConnection> Take();
	void Return(std::unique_ptr<SqlConnection> Connection);
	void Retry(const std::function<void(SqlConnection&)>& Work);
	void With(const std::function<void(SqlConnection&)>& Work);

	const SqlDialect Dialect;
	const size_t MaxConnections;
	const ConnectFunction Connect;
	std::mutex Mutex;
	std::condition_variable Returned;
	std::vector<std::unique_ptr<SqlConnection>> Idle;
	size_t NumConnections = 0;
};
