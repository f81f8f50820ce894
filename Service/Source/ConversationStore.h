#pragma once

#include "Backend.h"

#include <map>
#include <mutex>

/**
 * The conversations of a responder, by the id in their requests' header, and the turns that wait to be fetched.
 *
 * Several threads use it. It keeps the latest MaxConversations conversations and, of each, its latest turn: a client
 * polls for one turn at a time.
 */
class ConversationStore : public Backend
{
public:
	static constexpr size_t MaxConversations = 1000;

	explicit ConversationStore(std::unique_ptr<Responder> InResponder)
		: TheResponder(std::move(InResponder))
	{
	}

	/** Hands a turn to its conversation, a new one if the turn carries a file tree or the id is not known. */
	HttpReply Command(Turn UserTurn) override;
	HttpReply Status(const std::string& RequestId, const std::string& KeyName) override;

private:
	struct Entry
	{
		std::unique_ptr<Conversation> Talk;
		std::string RequestId;
		std::vector<HttpReply> StatusReplies;
		size_t NextStatusReply = 0;
		uint64_t Age = 0; // rises with each turn of any conversation
	};

	/** For its caller to destroy without the lock. */
	std::unique_ptr<Conversation> TakeOldest();

	const std::unique_ptr<Responder> TheResponder;
	std::mutex Mutex;
	std::map<std::pair<std::string, std::string>, Entry> Conversations; // by key name and id
	uint64_t NumTurns = 0;
};
