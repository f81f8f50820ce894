#pragma once

#include "Responder.h"

/**
 * Replays a conversation from a file, faults included. The first message, "script NAME", names the file NAME.json in
 * the folder of scripts. Docs/Service.md describes the format.
 */
class ScriptResponder : public Responder
{
public:
	explicit ScriptResponder(std::string InFolder)
		: Folder(std::move(InFolder))
	{
	}

	std::unique_ptr<Conversation> Begin(const Turn& FirstTurn) const override;

private:
	const std::string Folder;
};
