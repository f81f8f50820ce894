#pragma once

#include <string>

/**
 * The C++ text of a parameter's default as the text that a property reads: `TEXT("a")` is a, `2.f` is 2.000000,
 * `NAME_None` is None. What is none of the known forms comes back as it is.
 */
std::string GetDefaultText(const std::string& Source);
