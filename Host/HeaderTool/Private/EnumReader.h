#pragma once

#include "TokenReader.h"

#include <optional>

/**
 * Reads an enumeration from behind its UENUM(...), in one of its three forms: "enum class", "enum" and "namespace".
 *
 * @return nothing when it is malformed, which has been reported
 */
std::optional<FParsedEnum> ReadEnum(FTokenReader& Reader, const FSourceToken& Macro, const FSpecifierList& Specifiers);
