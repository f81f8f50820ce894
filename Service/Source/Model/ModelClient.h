#pragma once

#include "ModelRequest.h"
#include "RunningTurn.h"

#include <functional>
#include <variant>

using ModelResult = std::variant<ModelReply, UpstreamFault>;

/** Asks a model server, again where that can help. One thread at a time. */
class ModelClient
{
public:
	explicit ModelClient(const ModelConfig& InConfig);

	/** A request in the server's format. Making it takes time in proportion to the conversation's length. */
	UpstreamRequest Prepare(const ModelRequest& Request) const;
	/** @return the reply, or the last attempt's fault */
	ModelResult Ask(const UpstreamRequest& Request, RunningTurn& Turn);

private:
	ModelResult AskOnce(const UpstreamRequest& Request, RunningTurn& Turn);
	/** Servers that repeat the key in an answer must not have it shown and stored. */
	void HideKey(ModelReply& Reply) const;

	const ModelConfig& Config;
	const RequestFormat& Format;
	HttpTransfer Http;
};

/**
 * How long to wait before a request is repeated.
 *
 * @param Attempt  that failed, from 1
 * @param Elapsed  seconds since the first fault of the turn
 * @return nothing when it should not be repeated
 */
std::optional<double> FindRetryDelay(
	const UpstreamFault& Fault, int Attempt, double Elapsed, const ModelConfig& Config, double Random);
