#pragma once

#include "TurnRunner.h"

/** Answers with a language model behind a model server. */
class ModelResponder : public Responder
{
public:
	explicit ModelResponder(ModelConfig Config);
	std::unique_ptr<Conversation> Begin(const Turn& FirstTurn) const override;

private:
	const std::shared_ptr<ModelContext> Context; // conversations that are being given up may live longer
};
