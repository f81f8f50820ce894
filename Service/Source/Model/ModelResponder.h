#pragma once

#include "TurnRunner.h"

/** Answers with a language model behind a model server. */
class ModelResponder : public Responder
{
public:
	/** @param StatePath  the file that keeps conversations, so that they go on after a restart */
	ModelResponder(ModelConfig Config, const std::string& StatePath);
	std::unique_ptr<Conversation> Begin(const Turn& FirstTurn) const override;
	std::unique_ptr<Conversation> Reopen(const std::string& ConversationId) const override;
	std::string FindConversation(const std::string& RequestId) const override;

private:
	const std::shared_ptr<ModelContext> Context; // conversations that are being given up may live longer
};
