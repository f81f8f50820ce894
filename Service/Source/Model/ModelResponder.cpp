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

	Answer Respond(const Turn& UserTurn) override
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
			Running->Finish(Work(UserTurn, *Running));
		});
		Answer Result;
		Result.Pending = Current;
		return Result;
	}

private:
	Json Work(const Turn& UserTurn, RunningTurn& Running)
	{
		try
		{
			return Runner->Run(UserTurn, Running);
		}
		catch (const std::exception& Error)
		{
			std::cerr << "A turn failed: " << Error.what() << std::endl;
			return { { "status", "FAILED" }, { "error", "The service failed in this turn." } };
		}
	}

	const std::shared_ptr<ModelContext> Context;
	const std::unique_ptr<TurnRunner> Runner; // the worker's
	std::shared_ptr<RunningTurn> Current;
	std::thread Worker;
};
}

ModelResponder::ModelResponder(ModelConfig Config)
	: Context(std::make_shared<ModelContext>())
{
	Context->Config = std::move(Config);
}

std::unique_ptr<Conversation> ModelResponder::Begin(const Turn&) const
{
	return std::make_unique<ModelConversation>(Context);
}
