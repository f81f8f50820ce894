#pragma once

#include "ModelConfig.h"

#include <cstddef>
#include <string>

/** Estimates tokens without the model's tokenizer, and learns from what the server counted. */
class ContextBudget
{
public:
	explicit ContextBudget(const ModelConfig& InConfig)
		: Config(InConfig)
	{
	}

	bool Fits(size_t RequestBytes) const { return EstimateTokens(RequestBytes) <= InputTokens(); }
	int64_t EstimateTokens(size_t RequestBytes) const;
	/** For the whole request: what the output does not need, less a reserve of a tenth of the context. */
	int64_t InputTokens() const;
	/** Lowers the estimate of the room that is left, since the server found a request too long. */
	void Tighten() { Share *= 0.6; }

	/** @return whether the server counted so few tokens that it must have dropped a part of the request */
	bool Learn(size_t RequestBytes, int64_t CountedTokens);

	/** A tool result that fits, with a note in the middle of what is left out. NUL characters are replaced. */
	std::string Truncate(std::string Result) const;
	/** A rough limit in bytes for a number of tokens. */
	static size_t BytesFor(int64_t Tokens) { return static_cast<size_t>(Tokens) * 3; }

private:
	const ModelConfig& Config;
	double Ratio = 1; // counted to estimated
	double Share = 1;
};
