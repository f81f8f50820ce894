#pragma once

#include "PlainRequest.h"
#include "Responder.h"

#include <optional>

// The documents that change Blueprints.

/** Whether a word names a kind of value: "int", "vector", "bool[]" for an array. */
bool IsTypeName(const std::string& Word);

/** What the tool that changes Blueprints is given for a request that adds something. */
Json MakeBlueprintChange(const PlainRequest& Request);

/**
 * Where in a function the node that a request adds can stand.
 *
 * @param Document  of the Blueprint, with its functions
 * @return the request with the title of the node that it comes behind; or, in Problem, why there is no such place
 */
std::optional<PlainRequest> PlacePrintNode(
	const PlainRequest& Request, const std::string& Document, std::string& Problem);
