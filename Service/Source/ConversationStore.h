#pragma once

#include "Responder.h"

#include <map>
#include <mutex>

/**
 * The conversations that are going on, by the id in their requests' header, and the turns that wait to be fetched.
 *
 * Several threads use it. It keeps the latest MaxConversations conversations and, of each, its latest turn: a client
 * polls for one turn at a time.
 */
class ConversationStore
{
public:
	static constexpr size_t MaxConversations = 1000;

	explicit ConversationStore(const Responder& InResponder)
		: TheResponder(InResponder)
	{
	}

	/** Hands a turn to its conversation, a new one if the turn carries a file tree or the id is not known. */
	HttpReply Command(Turn UserTurn);
	HttpReply Status(const std::string& RequestId);

private:
	struct Entry
	{
		std::unique_ptr<Conversation> Talk;
		std::string RequestId;
		std::vector<HttpReply> StatusReplies;
		size_t NextStatusReply = 0;
		std::shared_ptr<PendingAnswer> Pending;
		uint64_t Age = 0; // rises with each turn of any conversation

		void Take(Answer Answered);
	};

	/** The conversation whose latest turn has the id, reopened if an earlier run of the service has begun it; or null.
	 */
	Entry* FindRequest(const std::string& RequestId);
	/** For its caller to destroy without the lock: ending a turn that is being worked on can take a second. */
	std::unique_ptr<Conversation> TakeOldest();

	const Responder& TheResponder;
	std::mutex Mutex;
	std::map<std::string, Entry> Conversations;
	uint64_t NumTurns = 0;
};
