#pragma once

#include "ContextBudget.h"
#include "ModelClient.h"
#include "UsageLimits.h"

/**
 * Makes a conversation fit the model's context: first old tool results and inputs shrink to a line each, then the model
 * summarizes the older half.
 */
class HistoryCompactor
{
public:
	HistoryCompactor(ContextBudget& InBudget, ModelClient& InClient)
		: Budget(InBudget)
		, Client(InClient)
	{
	}

	/**
	 * @param System    the system prompt and Tools the tools of the request, which count too
	 * @param OutPrepared  takes the request that fits
	 * @param InOutUsage  takes the usage of a summary
	 * @return why it does not fit, if it does not
	 */
	std::optional<UpstreamFault> Fit(History& Conversation, const ModelRequest& Request, RunningTurn& Turn,
		UpstreamRequest& OutPrepared, ModelUsage& InOutUsage);

private:
	std::optional<UpstreamFault> Summarize(History& Conversation, RunningTurn& Turn, ModelUsage& InOutUsage);

	ContextBudget& Budget;
	ModelClient& Client;
};
