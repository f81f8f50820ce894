#include "ModelStore.h"

#include "CommandBody.h"
#include "JsonFields.h"
#include "Migrations.h"
#include "ModelConfig.h"
#include "ModelRequest.h"
#include "RandomId.h"

#include <ctime>
#include <filesystem>

namespace
{
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

Json ParseOrNull(const std::string& Text)
{
	Json Value = ParseUntrustedJson(Text);
	return Value.is_object() ? Value : Json();
}
}

ModelStore::ModelStore(std::unique_ptr<SqlDatabase> InDatabase, double InLeaseSeconds)
	: Database(std::move(InDatabase))
	, LeaseSeconds(InLeaseSeconds)
	, Worker(NewRandomId())
	, Now(Database->GetDialect().Now)
{
	Database->Migrate(GetMigrations());
	if (!Database->GetDialect().bShared)
	{
		// Whoever held a lease on a turn in a file of ours is dead.
		Database->Run("UPDATE conversations SET lease_until = 0 WHERE lease_until > 0");
	}
	DropOld();
}

void ModelStore::DropOld()
{
	Database->Run("DELETE FROM conversations WHERE updated < $1", { std::time(nullptr) - SecondsKept });
	Database->Run("DELETE FROM turns WHERE conversation_id NOT IN (SELECT id FROM conversations)");
}

std::string ModelStore::BeginTurn(const Turn& UserTurn)
{
	const bool bFirst = !UserTurn.FileStructure.is_null();
	const std::string Body = ToRequestBody(TurnToJson(UserTurn));
	std::string ContinuedRequest;
	Database->Transact([&](SqlConnection& Connection) {
		ContinuedRequest.clear();
		Connection.Run(
			"INSERT INTO conversations (id, request_id, key_name, updated) VALUES ($1, $2, $3, 0) ON CONFLICT (id) "
			"DO NOTHING",
			{ UserTurn.ConversationId, UserTurn.RequestId, UserTurn.KeyName });
		const SqlRows Before = Connection.Run(
			std::string("SELECT key_name, request_id, CASE WHEN reply IS NULL THEN 1 ELSE 0 END FROM conversations "
						"WHERE id = $1") +
				Database->GetDialect().LockRow,
			{ UserTurn.ConversationId });
		if (Before.empty() || Before[0].GetText(0) != UserTurn.KeyName)
		{
			throw ForeignConversation("The conversation belongs to another key. Start a new one.");
		}
		if (bFirst)
		{
			Connection.Run("DELETE FROM turns WHERE conversation_id = $1", { UserTurn.ConversationId });
		}
		else if (Before[0].GetInteger(2) == 0)
		{
			ContinuedRequest = Before[0].GetText(1);
		}
		Connection.Run("INSERT INTO turns (request_id, conversation_id, number, body) VALUES ($1, $2, (SELECT "
					   "COALESCE(MAX(number), 0) + 1 FROM turns WHERE conversation_id = $2), $3) ON CONFLICT "
					   "(request_id) DO NOTHING",
			{ UserTurn.RequestId, UserTurn.ConversationId, Body });
		Connection.Run("UPDATE conversations SET request_id = $1, reply = NULL, progress = NULL, worker = $2, "
					   "lease_until = " +
						   Now + " + $3, polled = " + Now + ", updated = $4" + (bFirst ? ", state = NULL" : "") +
						   " WHERE id = $5",
			{ UserTurn.RequestId, Worker, LeaseSeconds, static_cast<int64_t>(std::time(nullptr)),
				UserTurn.ConversationId });
	});
	return ContinuedRequest;
}

std::optional<StoredConversation> ModelStore::Load(const std::string& RequestId)
{
	std::optional<StoredConversation> Loaded;
	Database->Transact([&](SqlConnection& Connection) {
		Loaded.reset();
		const SqlRows Found =
			Connection.Run("SELECT id, state, key_name FROM conversations WHERE request_id = $1", { RequestId });
		if (Found.empty())
		{
			return;
		}
		Loaded = StoredConversation{ Found[0].GetText(0), {}, ParseOrNull(Found[0].GetText(1)) };
		for (const SqlRow& Row : Connection.Run(
				 "SELECT request_id, body FROM turns WHERE conversation_id = $1 ORDER BY number", { Loaded->Id }))
		{
			Loaded->Turns.push_back(TurnFromJson(Row.GetText(1)));
			Loaded->Turns.back().ConversationId = Loaded->Id;
			Loaded->Turns.back().RequestId = Row.GetText(0);
			Loaded->Turns.back().KeyName = Found[0].GetText(2);
		}
	});
	const bool bReplaced = !Loaded || Loaded->Turns.empty() || Loaded->Turns.back().RequestId != RequestId;
	return bReplaced ? std::nullopt : std::move(Loaded);
}

bool ModelStore::FinishTurn(const std::string& RequestId, const Json& State, const Json& Reply)
{
	const Json& Cost = GetMember(State, "cost");
	const std::vector<SqlValue> Values = { RequestId, Worker, ToRequestBody(State), ToRequestBody(Reply),
		GetCount(State, "tokens"), Cost.is_number() ? Cost.get<double>() : 0.0, GetText(Reply, "error") };
	bool bFinished = false;
	Database->Transact([&](SqlConnection& Connection) {
		const SqlRows Changed = Connection.Run(
			"UPDATE conversations SET state = $3, reply = $4, tokens = $5, cost = $6, error = $7, progress = NULL, "
			"lease_until = 0 WHERE request_id = $1 AND worker = $2 AND reply IS NULL RETURNING id",
			Values);
		bFinished = !Changed.empty();
		if (bFinished)
		{
			Connection.Run("DELETE FROM turns WHERE conversation_id = $1", { Changed[0].GetText(0) });
		}
	});
	return bFinished;
}

std::optional<StoredTurn> ModelStore::Poll(const std::string& RequestId, const std::string& KeyName)
{
	const SqlRows Found = Database->Run("UPDATE conversations SET polled = " + Now +
											" WHERE request_id = $1 AND key_name = $2 RETURNING reply, progress, CASE "
											"WHEN lease_until < " +
											Now + " THEN 1 ELSE 0 END",
		{ RequestId, KeyName });
	if (Found.empty())
	{
		return std::nullopt;
	}
	StoredTurn Polled{ ParseOrNull(Found[0].GetText(0)), ParseOrNull(Found[0].GetText(1)), false };
	if (Polled.Reply.is_null() && !Found[0].IsNull(0))
	{
		Polled.Reply = { { "status", "FAILED" },
			{ "error", "The stored answer cannot be read. Send the prompt again." } };
	}
	Polled.bAbandoned = Polled.Reply.is_null() && Found[0].GetInteger(2) == 1;
	return Polled;
}

std::string ModelStore::Claim(const std::string& RequestId)
{
	const SqlRows Claimed = Database->Run(
		"UPDATE conversations SET worker = $2, lease_until = " + Now +
			" + $3 WHERE id IN (SELECT id FROM conversations WHERE request_id = $1 AND reply IS NULL AND lease_until < " +
			Now + Database->GetDialect().ClaimRow + ") RETURNING id",
		{ RequestId, Worker, LeaseSeconds });
	return Claimed.empty() ? "" : Claimed[0].GetText(0);
}

std::optional<double> ModelStore::Renew(const std::string& RequestId, const Json& Progress)
{
	const SqlRows Renewed = Database->Run("UPDATE conversations SET lease_until = " + Now +
											  " + $3, progress = $4 WHERE request_id = $1 AND worker = $2 AND reply "
											  "IS NULL RETURNING " +
											  Now + " - polled",
		{ RequestId, Worker, LeaseSeconds, ToRequestBody(Progress) });
	return Renewed.empty() ? std::nullopt : std::optional(Renewed[0].GetReal(0));
}

void ModelStore::ReleaseAll()
{
	Database->Run("UPDATE conversations SET lease_until = 0 WHERE worker = $1 AND reply IS NULL", { Worker });
}

void ModelStore::AddUsage(const std::string& KeyName, int64_t Day, const ModelConsumption& More)
{
	Database->Run("INSERT INTO key_usage (key_name, day, requests, tokens, minutes, cost) VALUES ($1, $2, $3, $4, $5, "
				  "$6) ON CONFLICT (key_name, day) DO UPDATE SET requests = key_usage.requests + $3, tokens = "
				  "key_usage.tokens + $4, minutes = key_usage.minutes + $5, cost = key_usage.cost + $6",
		{ KeyName, Day, More.Requests, More.Tokens, More.Minutes, More.Cost });
}

ModelConsumption ModelStore::GetUsage(int64_t Day)
{
	const SqlRows Found = Database->Run(
		"SELECT SUM(requests), SUM(tokens), SUM(minutes), SUM(cost) FROM key_usage WHERE day = $1", { Day });
	return { Found[0].GetInteger(0), Found[0].GetInteger(1), Found[0].GetReal(2), Found[0].GetReal(3) };
}

std::unique_ptr<SqlDatabase> OpenDatabase(const ModelDatabase& Settings, const std::string& StateFolder)
{
	std::unique_ptr<SqlDatabase> Opened;
	if (Settings.Address.IsEmpty())
	{
		std::filesystem::create_directories(StateFolder);
		Opened = SqlDatabase::OpenSqlite(StateFolder + "/conversations.sqlite");
	}
	else
	{
		Opened = SqlDatabase::OpenPostgres(Settings.Address.Reveal());
	}
	Opened->Migrate(GetMigrations());
	return Opened;
}

std::unique_ptr<ModelStore> OpenModelStore(const ModelDatabase& Settings, const std::string& StateFolder)
{
	return std::make_unique<ModelStore>(OpenDatabase(Settings, StateFolder), Settings.LeaseSeconds);
}
