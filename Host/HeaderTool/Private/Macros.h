#pragma once

#include "Conditions.h"

#include <string>

/** The macros that mark what is reflected. */
bool IsTypeMacro(const FToken& Token);
bool IsMemberMacro(const FToken& Token);

/** Why what this macro marks cannot stand below the condition around it; empty when it can. */
std::string GetConditionError(const FSourceToken& Macro);
