#pragma once

#include "../../Internal/Misc/CheckedFormat.h"

/** Marks a moment in a trace; the host records none. The format is a literal, checked as everywhere. */
#define TRACE_BOOKMARK(Format, ...) UE_VALIDATE_FORMAT(Format, ##__VA_ARGS__)
