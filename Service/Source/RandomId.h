#pragma once

#include <string>

/** 32 hexadecimal digits that nobody can guess. */
std::string NewRandomId();
