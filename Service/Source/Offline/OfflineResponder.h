#pragma once

#include "Responder.h"

/**
 * Answers without a model: understands a few requests in plain words, asks for the tools that they need, and sums up
 * what the tools found. What it does not understand it answers with what it can do.
 */
class OfflineResponder : public Responder
{
public:
	std::unique_ptr<Conversation> Begin(const Turn& FirstTurn) const override;
};
