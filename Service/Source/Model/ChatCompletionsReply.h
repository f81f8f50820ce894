#pragma once

#include "ModelRequest.h"

/**
 * A reply in the chat completions format.
 *
 * Servers differ in how they split calls over a stream, so a piece belongs to the call that its index names, unless it
 * brings a new id; without an index, a piece with an id begins a call and one without continues the latest.
 */
class ChatCompletionsReply : public ReplyAssembler
{
public:
	void AddEvent(const std::string& Data) override;
	void AddWholeReply(const Json& Body) override;
	std::optional<ModelReply> Finish() override;

private:
	struct PartialCall
	{
		std::string Id;
		std::string Name;
		std::string Arguments;
	};

	void AddChoice(const Json& Choice, const char* MessageKey);
	void AddPiece(const Json& Piece, size_t Position);
	PartialCall& FindCall(const Json& Piece, size_t Position);
	void AddUsage(const Json& Body);

	std::vector<PartialCall> Calls;
	std::vector<std::pair<int64_t, size_t>> CallsByIndex; // the latest call of an index is the last one
	std::string FinishReason;
};
