#pragma once

#include "Responder.h"

// What the tools for Blueprints and behavior trees answer, in words. Texts that are no JSON come back as they are.

std::string DescribeBlueprint(const std::string& Content);
std::string DescribeBehaviorTree(const std::string& Content);
std::string DescribeSavedBlueprints(const std::string& Content);
