#pragma once

#include "Responder.h"
#include "SqlDatabase.h"
#include "UsageLimits.h"

struct ModelDatabase;

/** A conversation as it was stored, and what was said in it since. */
struct StoredConversation
{
	std::string Id;
	std::vector<Turn> Turns; // that the state does not have yet; the last one waits for its reply
	Json State;              // null at the beginning
};

/** The id belongs to a conversation of another key. */
class ForeignConversation : public std::runtime_error
{
	using runtime_error::runtime_error;
};

/** What a poll sees of a turn. */
struct StoredTurn
{
	Json Reply;              // null until the turn has ended
	Json Progress;           // as its worker has last reported it; null if it has not
	bool bAbandoned = false; // its worker has not reported for too long, or has given it back
};

/**
 * Conversations and usage in a database, so that they outlive the process, and several processes can share them.
 *
 * A turn is stored before its request id is given out, and its reply together with the state that it leaves. So after a
 * kill at any moment a turn either has its reply, or can be worked out again from the same state: no client has seen
 * any of its tool calls by then.
 *
 * A turn has one worker, a process, which holds a lease on it and renews it; only the holder can end the turn. When the
 * lease has run out, the process that is asked for the turn takes it over. Several threads use it.
 */
class ModelStore
{
public:
	static constexpr double UsualLeaseSeconds = 15;

	/** @throws std::runtime_error when the database cannot be used, or was written by a newer version */
	explicit ModelStore(std::unique_ptr<SqlDatabase> InDatabase, double InLeaseSeconds = UsualLeaseSeconds);

	/**
	 * Stores a turn and takes the lease on it, also from a worker of the conversation's turn before. With a file tree
	 * the conversation begins again.
	 *
	 * @return the request whose reply came with the state that the turn continues from; empty if there is none
	 * @throws ForeignConversation when the conversation is another key's
	 */
	std::string BeginTurn(const Turn& UserTurn);
	/** What the holder of a turn's lease has to work on; nothing when the turn has been replaced. */
	std::optional<StoredConversation> Load(const std::string& RequestId);
	/** @return false, with nothing stored, for a turn that was replaced or whose lease another worker has */
	bool FinishTurn(const std::string& RequestId, const Json& State, const Json& Reply);
	/** Notes that somebody waits for a turn. @return nothing if the key has no such turn */
	std::optional<StoredTurn> Poll(const std::string& RequestId, const std::string& KeyName);
	/** Takes the lease of a turn that nobody works on. @return its conversation; empty if somebody else was faster */
	std::string Claim(const std::string& RequestId);
	/** @return the seconds since the latest poll; nothing when the lease is lost */
	std::optional<double> Renew(const std::string& RequestId, const Json& Progress);
	/** Ends all leases of this worker, so that others need not wait for their end. */
	void ReleaseAll();
	/** Forgets conversations of which nobody has heard for 30 days. */
	void DropOld();

	/** @param Day  since 1970 */
	void AddUsage(const std::string& KeyName, int64_t Day, const ModelConsumption& More);
	/** Of all keys. */
	ModelConsumption GetUsage(int64_t Day);

	double GetLeaseSeconds() const { return LeaseSeconds; }
	SqlDatabase& GetDatabase() { return *Database; }

private:
	const std::unique_ptr<SqlDatabase> Database;
	const double LeaseSeconds;
	const std::string Worker;
	const std::string Now; // SQL
};

/** The store that a configuration asks for: conversations.sqlite in the state folder, unless there is an address. */
std::unique_ptr<ModelStore> OpenModelStore(const ModelDatabase& Settings, const std::string& StateFolder);
/** The same without the conversations; its schema is the newest. */
std::unique_ptr<SqlDatabase> OpenDatabase(const ModelDatabase& Settings, const std::string& StateFolder);
