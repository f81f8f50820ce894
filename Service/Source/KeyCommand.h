#pragma once

#include <ostream>
#include <string>
#include <vector>

/**
 * 'kestrel-service keys': adds, lists and removes named API keys.
 *
 * @param Words  what follows "keys" on the command line
 * @throws std::runtime_error with a text for the user
 */
void RunKeyCommand(const std::vector<std::string>& Words, std::ostream& Out);
