#pragma once

#include "TokenReader.h"

#include <optional>

/**
 * Reads a variable from behind its UPROPERTY(...) to the end of its declaration.
 *
 * @return nothing when it is malformed, which has been reported
 */
std::optional<FParsedProperty> ReadProperty(FTokenReader& Reader, const FSourceToken& Macro,
	const FSpecifierList& Specifiers, const FParsedStruct& Struct, EAccess Access);
