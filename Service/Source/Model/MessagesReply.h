#pragma once

#include "ModelRequest.h"

#include <map>

/** A reply in the messages format: blocks that begin, grow and end under an index. */
class MessagesReply : public ReplyAssembler
{
public:
	void AddEvent(const std::string& Data) override;
	void AddWholeReply(const Json& Body) override;
	std::optional<ModelReply> Finish() override;

private:
	struct PartialBlock
	{
		Json Content;
		std::string Input; // of a tool use, as JSON text
	};

	void BeginBlock(const Json& Event);
	void GrowBlock(const Json& Event);
	void AddUsage(const Json& Reported);
	ReplyBlock MakeBlock(const PartialBlock& Block) const;

	std::map<int64_t, PartialBlock> Blocks;
	std::string StopReason;
	int64_t UncachedInput = 0;
	int64_t WrittenInput = 0;
};
