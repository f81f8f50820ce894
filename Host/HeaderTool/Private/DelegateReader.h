#pragma once

#include "TokenReader.h"

#include <optional>

/** Whether this begins the declaration of a dynamic delegate, such as DECLARE_DYNAMIC_DELEGATE_OneParam. */
bool IsDelegateMacro(const FToken& Token);

/**
 * Reads a dynamic delegate from its macro to behind its ';'.
 *
 * @param Owner the class around the declaration, if any
 * @return nothing when it is malformed, which has been reported
 */
std::optional<FParsedDelegate> ReadDelegate(FTokenReader& Reader, const std::string& Owner);
