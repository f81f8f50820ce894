#include "SqlDatabase.h"

#include <libpq-fe.h>

namespace
{
constexpr size_t MostConnections = 8; // of one process

constexpr SqlDialect PostgresDialect = {
	"BEGIN",
	// The number is any one that nobody else locks in this database.
	"BEGIN; SELECT pg_advisory_xact_lock(5309172); CREATE TABLE IF NOT EXISTS schema_version (version BIGINT NOT NULL);",
	"SELECT version FROM schema_version",
	"DELETE FROM schema_version; INSERT INTO schema_version SELECT ",
	// The same for all processes, and going on during a transaction.
	"EXTRACT(EPOCH FROM clock_timestamp())::double precision",
	" FOR UPDATE",
	" FOR UPDATE SKIP LOCKED",
	true,
};

using ResultPointer = std::unique_ptr<PGresult, void (*)(PGresult*)>;

std::string FirstLine(const std::string& Text)
{
	return Text.substr(0, Text.find('\n'));
}

std::optional<std::string> ToText(const SqlValue& Value)
{
	if (const auto* const Text = std::get_if<std::string>(&Value))
	{
		// The one character that a database's text cannot have.
		return Text->substr(0, Text->find('\0'));
	}
	if (const auto* const Integer = std::get_if<int64_t>(&Value))
	{
		return std::to_string(*Integer);
	}
	if (const auto* const Real = std::get_if<double>(&Value))
	{
		char Digits[40];
		std::snprintf(Digits, sizeof(Digits), "%.17g", *Real);
		return Digits;
	}
	return std::nullopt;
}

class PostgresConnection : public SqlConnection
{
public:
	explicit PostgresConnection(const std::string& Address)
		: Connection(Connect(Address), PQfinish)
		, Handle(Connection.get())
	{
		if (PQstatus(Handle) != CONNECTION_OK)
		{
			throw std::runtime_error("The database cannot be reached: " + FirstLine(PQerrorMessage(Handle)));
		}
		// Values, which a message could repeat, are left out of it.
		PQsetErrorVerbosity(Handle, PQERRORS_TERSE);
		PQsetNoticeProcessor(
			Handle, [](void*, const char*) {}, nullptr);
		// A request waits for this.
		RunScript("SET statement_timeout = '15s'");
	}

	SqlRows Run(const std::string& Sql, const std::vector<SqlValue>& Parameters) override
	{
		std::vector<std::optional<std::string>> Texts;
		std::vector<const char*> Pointers;
		Texts.reserve(Parameters.size());
		for (const SqlValue& Each : Parameters)
		{
			Texts.push_back(ToText(Each));
			Pointers.push_back(Texts.back() ? Texts.back()->c_str() : nullptr);
		}
		const ResultPointer Result(PQexecParams(Handle, Sql.c_str(), static_cast<int>(Pointers.size()), nullptr,
									   Pointers.data(), nullptr, nullptr, 0),
			PQclear);
		Check(Result.get());
		return ReadRows(Result.get());
	}

	void RunScript(const std::string& Sql) override
	{
		const ResultPointer Result(PQexec(Handle, Sql.c_str()), PQclear);
		Check(Result.get());
	}

private:
	static PGconn* Connect(const std::string& Address)
	{
		// The address's own members win over those before it.
		const char* const Names[] = { "connect_timeout", "tcp_user_timeout", "application_name", "client_encoding",
			"dbname", nullptr };
		const char* const Values[] = { "10", "15000", "kestrel-service", "UTF8", Address.c_str(), nullptr };
		return PQconnectdbParams(Names, Values, 1);
	}

	void Check(const PGresult* Result) const
	{
		const ExecStatusType Status = PQresultStatus(Result);
		if (Status == PGRES_COMMAND_OK || Status == PGRES_TUPLES_OK)
		{
			return;
		}
		const std::string Error = "The database cannot be used: " + FirstLine(PQerrorMessage(Handle));
		if (PQstatus(Handle) != CONNECTION_OK)
		{
			throw SqlConnectionLost(Error);
		}
		throw std::runtime_error(Error);
	}

	static SqlRows ReadRows(const PGresult* Result)
	{
		SqlRows Rows;
		const int NumColumns = PQnfields(Result);
		for (int Row = 0; Row < PQntuples(Result); ++Row)
		{
			std::vector<std::optional<std::string>> Columns(static_cast<size_t>(NumColumns));
			for (int Column = 0; Column < NumColumns; ++Column)
			{
				if (PQgetisnull(Result, Row, Column) == 0)
				{
					Columns[static_cast<size_t>(Column)].emplace(
						PQgetvalue(Result, Row, Column), static_cast<size_t>(PQgetlength(Result, Row, Column)));
				}
			}
			Rows.emplace_back(std::move(Columns));
		}
		return Rows;
	}

	const std::unique_ptr<PGconn, void (*)(PGconn*)> Connection;
	PGconn* const Handle;
};
}

std::unique_ptr<SqlDatabase> SqlDatabase::OpenPostgres(const std::string& Address)
{
	return std::make_unique<SqlDatabase>(
		PostgresDialect, MostConnections, [Address] { return std::make_unique<PostgresConnection>(Address); });
}
