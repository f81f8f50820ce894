#pragma once

#include "Backend.h"
#include "LeaseKeeper.h"
#include "RateLimit.h"
#include "TurnRunner.h"
#include "TurnThreads.h"

#include <unordered_map>

/**
 * Answers with a language model behind a model server.
 *
 * What lasts is in the store; here are the turns that this process works on, and the conversations that it may soon go
 * on with. Each turn is worked on by a thread of its own.
 */
class ModelBackend : public Backend
{
public:
	/** Conversations that are kept ready, at most; others are read from the store when they go on. */
	static constexpr size_t MaxReady = 1000;

	ModelBackend(ModelConfig Config, std::shared_ptr<ModelStore> Store);
	~ModelBackend() override;

	HttpReply Command(Turn UserTurn) override;
	HttpReply Status(const std::string& RequestId, const std::string& KeyName) override;
	void Stop() override;
	void CheckHealth() override;

private:
	/** The latest turn of a conversation, as far as this process knows. */
	struct LocalTurn
	{
		std::string ConversationId;
		std::string RequestId;
		std::string KeyName;
		std::shared_ptr<RunningTurn> Running;
		std::unique_ptr<TurnRunner> Runner; // with the state after the turn; the worker's own until then
		uint64_t Age = 0;
	};
	using LocalTurnPointer = std::shared_ptr<LocalTurn>;

	LocalTurnPointer Find(const std::string& RequestId, const std::string& KeyName);
	/**
	 * Takes the place of the conversation's turn before, which is cancelled.
	 *
	 * @param Continued  the request after which the conversation goes on: if that turn was worked on here, its state is
	 * ready
	 */
	void Register(const LocalTurnPointer& Local, const std::string& Continued);
	void DropOldest();
	void Start(const LocalTurnPointer& Local, std::optional<Turn> UserTurn);
	void Work(const LocalTurnPointer& Local, const std::optional<Turn>& UserTurn);
	/** @return the status reply; nothing when the turn was replaced */
	std::optional<Json> WorkOut(LocalTurn& Local, TurnRunner& Runner, const std::optional<Turn>& UserTurn);

	void NoteEnd(const LocalTurn& Local, const TurnRunner& Runner, const Json& Reply);

	ModelContext Context;
	std::mutex Mutex;
	std::unordered_map<std::string, LocalTurnPointer> Turns;  // by request
	std::unordered_map<std::string, LocalTurnPointer> Latest; // by conversation
	uint64_t NumTurns = 0;
	bool bStopping = false;
	RateLimit Rates;
	LeaseKeeper Leases;
	TurnThreads Threads;
};
