#pragma once

#include "ModelRequest.h"

/** POST BASE/chat/completions: messages with roles, tool calls whose arguments are JSON in a string. */
class ChatCompletionsFormat : public RequestFormat
{
public:
	UpstreamRequest MakeRequest(const ModelServer& Server, const ModelRequest& Request) const override;
	std::unique_ptr<ReplyAssembler> MakeAssembler() const override;
};
