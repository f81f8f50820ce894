#pragma once

#include "PlainRequest.h"
#include "Responder.h"

#include <optional>

// The documents that change Blueprints.

/** Whether a word names a kind of value: "int", "vector", "bool[]" for an array. */
bool IsTypeName(const std::string& Word);

// What the tool that changes Blueprints is given.
Json MakeVariable(const Plain::AddVariable& Request);
Json MakeFunction(const Plain::AddFunction& Request);
Json MakePrintNode(const Plain::PlacePrintNode& Request);

/**
 * Where in a function the node that a request adds can stand.
 *
 * @param Document  of the Blueprint, with its functions
 * @return the node with its neighbors; or, in Problem, why there is no such place
 */
std::optional<Plain::PlacePrintNode> FindPlace(
	const Plain::AddPrintNode& Request, const std::string& Document, std::string& Problem);
