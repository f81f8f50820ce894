#include "ModelStore.h"

#include "CommandBody.h"
#include "JsonFields.h"
#include "ModelRequest.h"

#include <ctime>
#include <stdexcept>

namespace
{
/** What brings a file from the version of its index to the next. Never changed, only added to. */
const char* const Migrations[] = {
	"CREATE TABLE conversations (id TEXT PRIMARY KEY, request_id TEXT NOT NULL UNIQUE, turn TEXT NOT NULL, reply TEXT, "
	"state TEXT, updated INTEGER NOT NULL) WITHOUT ROWID;"
	"CREATE TABLE usage (day INTEGER PRIMARY KEY, requests INTEGER NOT NULL, tokens INTEGER NOT NULL, minutes REAL NOT "
	"NULL, cost REAL NOT NULL);",
};

constexpr int64_t SecondsKept = 30 * 24 * 60 * 60;

/** In the form of a command's body, with what came in headers beside it. */
Json TurnToJson(const Turn& UserTurn)
{
	return { { "engine_version", UserTurn.EngineVersion }, { "message", UserTurn.Message },
		{ "file_structure", UserTurn.FileStructure }, { "tool_results", UserTurn.ToolResults } };
}

Turn TurnFromJson(const std::string& Text)
{
	Turn Result = ParseCommandBody(Text).value_or(Turn());
	Result.EngineVersion = GetText(ParseUntrustedJson(Text), "engine_version");
	return Result;
}

Json ParseOrNull(const std::optional<std::string>& Text)
{
	Json Value = Text ? ParseUntrustedJson(*Text) : Json();
	return Value.is_object() ? Value : Json();
}
}

ModelStore::ModelStore(const std::string& Path)
	: Database(Path)
{
	// A reader does not wait for a writer, and a commit is one write. What a power failure could lose, a kill cannot.
	Database.Execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL;");
	Migrate();
	DropOld();
}

void ModelStore::Migrate()
{
	Database.Execute("BEGIN IMMEDIATE");
	int64_t Version = 0;
	{
		SqliteStatement Query(Database, "PRAGMA user_version");
		Version = Query.Step() ? Query.GetInteger(0) : 0;
	}
	const int64_t Newest = static_cast<int64_t>(std::size(Migrations));
	if (Version < 0 || Version > Newest)
	{
		Database.Execute("ROLLBACK");
		throw std::runtime_error("The stored conversations were written by a newer version of this service (format " +
								 std::to_string(Version) + ", known up to " + std::to_string(Newest) + ")");
	}
	for (; Version < Newest; ++Version)
	{
		Database.Execute(Migrations[Version]);
	}
	Database.Execute("PRAGMA user_version = " + std::to_string(Newest) + "; COMMIT;");
}

void ModelStore::DropOld()
{
	SqliteStatement(Database, "DELETE FROM conversations WHERE updated < ?")
		.Bind(1, std::time(nullptr) - SecondsKept)
		.Step();
}

void ModelStore::BeginTurn(
	const std::string& ConversationId, const std::string& RequestId, const Turn& UserTurn, bool bFirst)
{
	const std::lock_guard Lock(Mutex);
	SqliteStatement(Database,
		std::string(
			"INSERT INTO conversations (id, request_id, turn, updated) VALUES (?1, ?2, ?3, ?4) ON CONFLICT (id) DO "
			"UPDATE SET request_id = ?2, turn = ?3, updated = ?4, reply = NULL") +
			(bFirst ? ", state = NULL" : ""))
		.Bind(1, ConversationId)
		.Bind(2, RequestId)
		.Bind(3, ToRequestBody(TurnToJson(UserTurn)))
		.Bind(4, static_cast<int64_t>(std::time(nullptr)))
		.Step();
}

void ModelStore::FinishTurn(
	const std::string& ConversationId, const std::string& RequestId, const Json& State, const Json& Reply)
{
	const std::lock_guard Lock(Mutex);
	SqliteStatement(Database, "UPDATE conversations SET state = ?3, reply = ?4 WHERE id = ?1 AND request_id = ?2")
		.Bind(1, ConversationId)
		.Bind(2, RequestId)
		.Bind(3, ToRequestBody(State))
		.Bind(4, ToRequestBody(Reply))
		.Step();
}

std::optional<StoredConversation> ModelStore::Find(const std::string& Column, const std::string& Value)
{
	const std::lock_guard Lock(Mutex);
	SqliteStatement Query(
		Database, "SELECT id, request_id, turn, state, reply FROM conversations WHERE " + Column + " = ?");
	if (!Query.Bind(1, Value).Step())
	{
		return std::nullopt;
	}
	return StoredConversation{ Query.GetText(0).value_or(""), Query.GetText(1).value_or(""),
		TurnFromJson(Query.GetText(2).value_or("")), ParseOrNull(Query.GetText(3)), ParseOrNull(Query.GetText(4)) };
}

std::optional<StoredConversation> ModelStore::FindConversation(const std::string& ConversationId)
{
	return Find("id", ConversationId);
}

std::optional<StoredConversation> ModelStore::FindRequest(const std::string& RequestId)
{
	return Find("request_id", RequestId);
}

void ModelStore::AddUsage(int64_t Day, const ModelConsumption& More)
{
	const std::lock_guard Lock(Mutex);
	SqliteStatement(Database,
		"INSERT INTO usage VALUES (?1, ?2, ?3, ?4, ?5) ON CONFLICT (day) DO UPDATE SET requests = requests + ?2, tokens = "
		"tokens + ?3, minutes = minutes + ?4, cost = cost + ?5")
		.Bind(1, Day)
		.Bind(2, More.Requests)
		.Bind(3, More.Tokens)
		.Bind(4, More.Minutes)
		.Bind(5, More.Cost)
		.Step();
}

ModelConsumption ModelStore::GetUsage(int64_t Day)
{
	const std::lock_guard Lock(Mutex);
	SqliteStatement Query(Database, "SELECT requests, tokens, minutes, cost FROM usage WHERE day = ?");
	if (!Query.Bind(1, Day).Step())
	{
		return {};
	}
	return { Query.GetInteger(0), Query.GetInteger(1), Query.GetReal(2), Query.GetReal(3) };
}
