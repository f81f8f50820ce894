#pragma once

#include "Responder.h"

#include <string>

/** @return the violations of a JSON Schema, a line each with its place; empty when there are none */
std::string CheckAgainstSchema(const Json& Schema, const Json& Value);
