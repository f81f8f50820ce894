#pragma once

#include "HAL/Platform.h"

/** No white space at all. */
template <typename CharType>
struct TCondensedJsonPrintPolicy
{
	static constexpr bool bPretty = false;
};
