#include "SqlDatabase.h"

#include <cstdlib>

int64_t SqlRow::GetInteger(size_t Column) const
{
	return std::strtoll(GetText(Column).c_str(), nullptr, 10);
}

double SqlRow::GetReal(size_t Column) const
{
	return std::strtod(GetText(Column).c_str(), nullptr);
}

SqlDatabase::SqlDatabase(const SqlDialect& InDialect, size_t InMaxConnections, ConnectFunction InConnect)
	: Dialect(InDialect)
	, MaxConnections(InMaxConnections)
	, Connect(std::move(InConnect))
{
}

std::unique_ptr<SqlConnection> SqlDatabase::Take()
{
	std::unique_lock Lock(Mutex);
	Returned.wait(Lock, [this] { return !Idle.empty() || NumConnections < MaxConnections; });
	if (!Idle.empty())
	{
		std::unique_ptr<SqlConnection> Taken = std::move(Idle.back());
		Idle.pop_back();
		return Taken;
	}
	++NumConnections;
	Lock.unlock();
	try
	{
		return Connect();
	}
	catch (const std::exception&)
	{
		Return(nullptr);
		throw;
	}
}

void SqlDatabase::Return(std::unique_ptr<SqlConnection> Connection)
{
	{
		const std::lock_guard Lock(Mutex);
		if (Connection)
		{
			Idle.push_back(std::move(Connection));
		}
		else
		{
			--NumConnections;
		}
	}
	Returned.notify_one();
}

void SqlDatabase::With(const std::function<void(SqlConnection&)>& Work)
{
	std::unique_ptr<SqlConnection> Connection = Take();
	try
	{
		Work(*Connection);
	}
	catch (const std::exception&)
	{
		// Its state is not known: it may be in the middle of a transaction, which ends with it.
		Connection.reset();
		Return(nullptr);
		throw;
	}
	Return(std::move(Connection));
}

void SqlDatabase::Retry(const std::function<void(SqlConnection&)>& Work)
{
	// When the server restarts, every idle connection is lost.
	for (size_t Attempt = 0;; ++Attempt)
	{
		try
		{
			With(Work);
			return;
		}
		catch (const SqlConnectionLost&)
		{
			if (Attempt == MaxConnections)
			{
				throw;
			}
		}
	}
}

void SqlDatabase::Transact(const std::function<void(SqlConnection&)>& Work)
{
	Retry([&](SqlConnection& Connection) {
		Connection.RunScript(Dialect.Begin);
		Work(Connection);
		Connection.RunScript("COMMIT");
	});
}

SqlRows SqlDatabase::Run(const std::string& Sql, const std::vector<SqlValue>& Parameters)
{
	SqlRows Rows;
	Retry([&](SqlConnection& Connection) { Rows = Connection.Run(Sql, Parameters); });
	return Rows;
}

void SqlDatabase::Migrate(const std::vector<const char*>& Migrations)
{
	With([&](SqlConnection& Connection) {
		Connection.RunScript(Dialect.BeginMigration);
		const SqlRows Found = Connection.Run(Dialect.GetVersion);
		const int64_t Version = Found.empty() ? 0 : Found[0].GetInteger(0);
		const int64_t Newest = static_cast<int64_t>(Migrations.size());
		if (Version < 0 || Version > Newest)
		{
			throw std::runtime_error(
				"The stored conversations were written by a newer version of this service (format " +
				std::to_string(Version) + ", known up to " + std::to_string(Newest) + ")");
		}
		for (int64_t Next = Version; Next < Newest; ++Next)
		{
			Connection.RunScript(Migrations[static_cast<size_t>(Next)]);
		}
		Connection.RunScript(Dialect.SetVersion + std::to_string(Newest));
		Connection.RunScript("COMMIT");
	});
}
