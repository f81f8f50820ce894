#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <vector>

/**
 * 'kestrel-service connect' and 'disconnect': make a project use the service on this machine, and no longer.
 *
 * @param Words  the command line from the command on
 * @return false when the user did not agree
 * @throws std::runtime_error with a text for the user; nothing is changed then
 */
bool RunConnectCommand(const std::vector<std::string>& Words, std::istream& In, std::ostream& Out);
