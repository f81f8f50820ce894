#pragma once

#include "TokenReader.h"

#include <optional>

/**
 * Reads a function from behind its UFUNCTION(...) to the end of its declaration.
 *
 * @return nothing when it is malformed, which has been reported
 */
std::optional<FParsedFunction> ReadFunction(FTokenReader& Reader, const FSourceToken& Macro,
	const FSpecifierList& Specifiers, const FParsedStruct& Struct, EAccess Access);

/** What the type of a parameter says about its direction; bInOut: it is marked UPARAM(ref). */
void SetParameterFlags(FParsedProperty& Parameter, bool bInOut);
/** The return value is the last parameter, with a name of its own. */
void AddReturnValue(FParsedFunction& Function, FParsedProperty& Return, bool bReturns);
void AddOutParametersFlag(FParsedFunction& Function);
