#pragma once

#include "HAL/Platform.h"

/** Line breaks and a tab a level: the default of the writer factory. */
template <typename CharType>
struct TPrettyJsonPrintPolicy
{
	static constexpr bool bPretty = true;
};
