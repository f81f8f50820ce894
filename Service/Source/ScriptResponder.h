#pragma once

#include "Responder.h"

/**
 * Replays a conversation from a file, faults included. The first message, "script NAME", names the file NAME.json in
 * the folder of scripts. Docs/Service.md describes the format.
 */
class ScriptResponder : public Responder
{
public:
	/**
	 * Checks the scripts that are there; those that come later are checked when they are asked for.
	 *
	 * @throws std::runtime_error when a script is not valid or the folder cannot be read
	 */
	explicit ScriptResponder(std::string InFolder);

	std::unique_ptr<Conversation> Begin(const Turn& FirstTurn) const override;

private:
	const std::string Folder;
};
