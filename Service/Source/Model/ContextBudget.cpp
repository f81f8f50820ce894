#include "ContextBudget.h"

#include "Utf8.h"

#include <algorithm>

namespace
{
// English takes about four bytes a token, code and JSON about three; the rest is a margin for what is dense.
constexpr double BytesPerToken = 3.5;
constexpr double Margin = 1.1;
constexpr double UsableShare = 0.9;
constexpr double LowestRatio = 0.5;
constexpr double HighestRatio = 2;
/** Below this, what servers add themselves blurs the comparison. */
constexpr double FewTokens = 2000;
}

int64_t ContextBudget::EstimateTokens(size_t RequestBytes) const
{
	return static_cast<int64_t>(static_cast<double>(RequestBytes) / BytesPerToken * Margin * Ratio);
}

int64_t ContextBudget::InputTokens() const
{
	const double Usable = Config.Server.ContextTokens * UsableShare - Config.Server.MaxOutputTokens;
	return static_cast<int64_t>(Usable * Share);
}

bool ContextBudget::Learn(size_t RequestBytes, int64_t CountedTokens)
{
	if (CountedTokens <= 0)
	{
		return false;
	}
	const double Estimated = static_cast<double>(RequestBytes) / BytesPerToken * Margin;
	const double Measured = static_cast<double>(CountedTokens) / std::max(Estimated, 1.0);
	Ratio = std::clamp((Ratio + Measured) / 2, LowestRatio, HighestRatio);
	return Estimated > FewTokens && Measured < LowestRatio / 2;
}

std::string ContextBudget::Truncate(std::string Result) const
{
	for (size_t At = Result.find('\0'); At != std::string::npos; At = Result.find('\0', At))
	{
		Result.replace(At, 1, "\xEF\xBF\xBD");
	}
	const size_t Limit = BytesFor(Config.ResultTokens);
	if (Result.size() <= Limit)
	{
		return Result;
	}
	const size_t HeadEnd = FindCharacterStart(Result, Limit * 2 / 3);
	const size_t TailStart = FindCharacterStart(Result, Result.size() - Limit / 3);
	return Result.substr(0, HeadEnd) + "\n[... " + std::to_string(TailStart - HeadEnd) +
		   " bytes are left out here; ask for a smaller part, for example with view_range ...]\n" +
		   Result.substr(TailStart);
}
