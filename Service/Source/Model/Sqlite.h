#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

/** A database file. Not for several threads at once. Errors are std::runtime_error with the file's name. */
class SqliteDatabase
{
public:
	/** Creates the file for its owner only, if there is none. */
	explicit SqliteDatabase(const std::string& InPath);
	~SqliteDatabase();
	SqliteDatabase(const SqliteDatabase&) = delete;
	SqliteDatabase& operator=(const SqliteDatabase&) = delete;

	/** Runs one or several statements without parameters or results. */
	void Execute(const std::string& Sql);
	[[noreturn]] void Fail(const std::string& What) const;
	sqlite3* Get() const { return Handle; }

private:
	const std::string Path;
	sqlite3* Handle = nullptr;
};

/** One statement: parameters and columns count from 1 and 0, as in SQLite. */
class SqliteStatement
{
public:
	SqliteStatement(SqliteDatabase& InDatabase, const std::string& Sql);
	~SqliteStatement();
	SqliteStatement(const SqliteStatement&) = delete;
	SqliteStatement& operator=(const SqliteStatement&) = delete;

	SqliteStatement& Bind(int Parameter, const std::string& Text);
	SqliteStatement& Bind(int Parameter, int64_t Number);
	SqliteStatement& Bind(int Parameter, double Number);
	/** @return whether there is a row */
	bool Step();
	/** Nothing for NULL. */
	std::optional<std::string> GetText(int Column) const;
	int64_t GetInteger(int Column) const;
	double GetReal(int Column) const;

private:
	SqliteDatabase& Database;
	sqlite3_stmt* Handle = nullptr;
};
