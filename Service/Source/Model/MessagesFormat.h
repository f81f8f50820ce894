#pragma once

#include "ModelRequest.h"

/** POST BASE/messages: messages made of content blocks, the system prompt apart. */
class MessagesFormat : public RequestFormat
{
public:
	UpstreamRequest MakeRequest(const ModelServer& Server, const ModelRequest& Request) const override;
	std::unique_ptr<ReplyAssembler> MakeAssembler() const override;
};
