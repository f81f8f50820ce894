#include "TestDatabase.h"

#include "SqlDatabase.h"

#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
/** The program that runs the server for as long as its standard input is open. */
class PostgresProgram
{
public:
	PostgresProgram()
	{
		int Input[2];
		int Output[2];
		if (pipe(Input) != 0 || pipe(Output) != 0)
		{
			throw std::runtime_error("There are no pipes");
		}
		Child = fork();
		if (Child == 0)
		{
			dup2(Input[0], STDIN_FILENO);
			dup2(Output[1], STDOUT_FILENO);
			for (const int Each : { Input[0], Input[1], Output[0], Output[1] })
			{
				close(Each);
			}
			execlp("python3", "python3", POSTGRES_SERVER, nullptr);
			_exit(127);
		}
		close(Input[0]);
		close(Output[1]);
		KeptOpen = Input[1];
		std::FILE* const Lines = fdopen(Output[0], "r");
		char Line[1024] = "";
		Address = std::fgets(Line, sizeof(Line), Lines) ? Line : "";
		std::fclose(Lines);
		Address = Address.substr(0, Address.find('\n'));
		if (Address.empty())
		{
			throw std::runtime_error("PostgreSQL cannot be started: see above");
		}
	}

	~PostgresProgram()
	{
		close(KeptOpen);
		waitpid(Child, nullptr, 0);
	}

	std::string Address; // with "NAME" where the database's name belongs

private:
	pid_t Child = -1;
	int KeptOpen = -1;
};

std::string AddressOf(const std::string& Pattern, const std::string& Name)
{
	return std::string(Pattern).replace(Pattern.find("NAME"), 4, Name);
}
}

std::string TestPostgres::MakeDatabase()
{
	static const PostgresProgram Program;
	static int NumDatabases = 0;
	const std::string Name = "test" + std::to_string(++NumDatabases);
	SqlDatabase::OpenPostgres(AddressOf(Program.Address, "postgres"))->Run("CREATE DATABASE " + Name);
	return AddressOf(Program.Address, Name);
}

std::unique_ptr<SqlDatabase> TestDatabase::Open() const
{
	return Address.empty() ? SqlDatabase::OpenSqlite(Folder.Path + "/conversations.sqlite")
						   : SqlDatabase::OpenPostgres(Address);
}
