#pragma once

#include "Responder.h"

#include <string>

/**
 * The project's files as an indented list.
 *
 * A tree that is too large is shown without the contents of some folders, the deepest first, each with a note of what
 * is left out; Source goes before the rest.
 *
 * @param Tree  as clients send it: an object per folder, anything else is a file
 */
std::string DescribeProjectTree(const Json& Tree, size_t MaxBytes);
