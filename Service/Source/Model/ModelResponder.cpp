#include "ModelResponder.h"

#include <exception>
#include <iostream>
#include <thread>

namespace
{
/**
 * A conversation whose turns are worked on by a thread, one at a time: a new turn cancels the one before and waits, on
 * its own thread, until it has ended.
 */
class ModelConversation : public Conversation
{
public:
	explicit ModelConversation(std::shared_ptr<ModelContext> InContext)
		: Context(std::move(InContext))
		, Runner(std::make_unique<TurnRunner>(*Context))
	{
	}

	~ModelConversation() override
	{
		if (Worker.joinable())
		{
			Current->Cancel();
			Worker.join();
		}
	}

	/** @return false when the stored state cannot be used */
	bool Restore(StoredConversation Stored)
	{
		Restored = std::move(Stored);
		return Restored.State.is_null() || Runner->FromJson(Restored.State);
	}

	Answer Respond(const Turn& UserTurn) override
	{
		Context->Store->BeginTurn(
			UserTurn.ConversationId, UserTurn.RequestId, UserTurn, !UserTurn.FileStructure.is_null());
		return Start(UserTurn);
	}

	Answer Resume() override
	{
		if (Restored.Reply.is_null())
		{
			Restored.LatestTurn.ConversationId = Restored.Id;
			Restored.LatestTurn.RequestId = Restored.RequestId;
			return Start(Restored.LatestTurn);
		}
		Answer Result;
		Result.StatusReplies.push_back(HttpReply::FromJson(Restored.Reply));
		return Result;
	}

private:
	Answer Start(const Turn& UserTurn)
	{
		if (Current)
		{
			Current->Cancel();
		}
		Current = std::make_shared<RunningTurn>(Context->Config.Timeouts.Unpolled);
		Worker = std::thread([this, UserTurn, Running = Current, Previous = std::move(Worker)]() mutable {
			if (Previous.joinable())
			{
				Previous.join();
			}
			Work(UserTurn, *Running);
		});
		Answer Result;
		Result.Pending = Current;
		return Result;
	}

	void Work(const Turn& UserTurn, RunningTurn& Running)
	{
		Json Reply = { { "status", "FAILED" }, { "error", "The service failed in this turn." } };
		try
		{
			Reply = Runner->Run(UserTurn, Running);
			// Stored before anybody can see it. A turn that was cancelled by a stop goes on with the next start.
			if (!Running.IsCancelled())
			{
				Context->Store->FinishTurn(UserTurn.ConversationId, UserTurn.RequestId, Runner->ToJson(), Reply);
			}
		}
		catch (const std::exception& Error)
		{
			std::cerr << "A turn failed: " << Error.what() << std::endl;
		}
		Running.Finish(Reply);
	}

	const std::shared_ptr<ModelContext> Context;
	const std::unique_ptr<TurnRunner> Runner; // the worker's
	StoredConversation Restored;
	std::shared_ptr<RunningTurn> Current;
	std::thread Worker;
};
}

ModelResponder::ModelResponder(ModelConfig Config, const std::string& StatePath)
	: Context(std::make_shared<ModelContext>())
{
	Context->Config = std::move(Config);
	Context->Store = std::make_unique<ModelStore>(StatePath);
	Context->Today.KeepIn(*Context->Store);
}

std::unique_ptr<Conversation> ModelResponder::Begin(const Turn&) const
{
	return std::make_unique<ModelConversation>(Context);
}

std::unique_ptr<Conversation> ModelResponder::Reopen(const std::string& ConversationId) const
{
	std::optional<StoredConversation> Stored = Context->Store->FindConversation(ConversationId);
	auto Reopened = std::make_unique<ModelConversation>(Context);
	return Stored && Reopened->Restore(std::move(*Stored)) ? std::move(Reopened) : nullptr;
}

std::string ModelResponder::FindConversation(const std::string& RequestId) const
{
	const std::optional<StoredConversation> Stored = Context->Store->FindRequest(RequestId);
	return Stored ? Stored->Id : "";
}
