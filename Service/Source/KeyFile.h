#pragma once

#include <string>

/**
 * The first line of a file, without whitespace at its end.
 *
 * @throws std::runtime_error when it cannot be read or is empty: an empty key would let everybody in
 */
std::string ReadKeyFile(const std::string& Path);
