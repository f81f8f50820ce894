#pragma once

#include "Responder.h"

#include <string>

// What the tools for Blueprints and behavior trees answer, in words. Texts that are no JSON come back as they are.

std::string DescribeBlueprint(const std::string& Content);
std::string DescribeBehaviorTree(const std::string& Content);
std::string DescribeSavedBlueprints(const std::string& Content);
std::string DescribeChangedBlueprint(const std::string& Content);
/** Grouped by Blueprint; empty when there are none. At most MaxLines matches are named. */
std::string DescribeBlueprintReferences(const Json& Matches, size_t MaxLines);
