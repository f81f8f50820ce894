#pragma once

#include <ostream>
#include <string>

/**
 * Reads a configuration, asks the model server for a word and for a tool call, and writes what works.
 *
 * @return whether all of it does
 */
bool CheckConfig(const std::string& Path, std::ostream& Out);
