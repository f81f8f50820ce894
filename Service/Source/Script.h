#pragma once

#include "Responder.h"

#include <string>

/**
 * Reads a conversation that is replayed, and checks all of it; Docs/Service.md describes the format.
 *
 * @return the array of its turns
 * @throws std::runtime_error that names the file and the place in it
 */
Json LoadScript(const std::string& Path);
