#pragma once

#include "Responder.h"
#include "Sqlite.h"
#include "UsageLimits.h"

#include <mutex>
#include <optional>
#include <string>

/** A conversation as it was stored: the state before its latest turn if that has no reply, and after it otherwise. */
struct StoredConversation
{
	std::string Id;
	std::string RequestId;
	Turn LatestTurn;
	Json State; // null if the latest turn is the first and has not ended
	Json Reply; // null until the latest turn has ended
};

/**
 * Conversations and usage in an SQLite file, so that they outlive the process.
 *
 * A turn is stored before its request id is given out, and its reply together with the state that it leaves. So after a
 * kill at any moment a turn either has its reply, or can be worked out again from the same state: no client has seen
 * any of its tool calls by then. Several threads use it.
 */
class ModelStore
{
public:
	/** @throws std::runtime_error when the file cannot be used, or was written by a newer version */
	explicit ModelStore(const std::string& Path);

	/** @param bFirst  the turn begins the conversation anew */
	void BeginTurn(const std::string& ConversationId, const std::string& RequestId, const Turn& UserTurn, bool bFirst);
	/** Does nothing for a turn that another one has replaced. */
	void FinishTurn(
		const std::string& ConversationId, const std::string& RequestId, const Json& State, const Json& Reply);
	std::optional<StoredConversation> FindConversation(const std::string& ConversationId);
	std::optional<StoredConversation> FindRequest(const std::string& RequestId);

	/** @param Day  since 1970 */
	void AddUsage(int64_t Day, const ModelConsumption& More);
	ModelConsumption GetUsage(int64_t Day);

private:
	void Migrate();
	void DropOld();
	std::optional<StoredConversation> Find(const std::string& Column, const std::string& Value);

	std::mutex Mutex;
	SqliteDatabase Database;
};
