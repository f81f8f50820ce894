#pragma once

#include "PlainRequest.h"

/**
 * Understands "read FILE", "show lines 5-12 of FILE", "read FILE lines 5 to 12", "read A.h and B.h",
 * "list the files in FOLDER", "show the tree", "create FILE with TEXT", "replace OLD with NEW in FILE",
 * "insert TEXT at line 3 of FILE", "delete FILE", "run python SCRIPT", "compile", "find TEXT", "read blueprint NAME",
 * "show the variables of blueprint NAME", "create blueprint NAME from CLASS in /Game/FOLDER", "save all", "read
 * behavior tree NAME", "add an int variable NAME to BLUEPRINT with value 5", "add function NAME with inputs A int, B
 * vector and output C bool to BLUEPRINT", "add a print node to function NAME of BLUEPRINT saying TEXT", "finish".
 * Case-insensitive outside paths and strings. Arguments with spaces are quoted, with \n, \t and \" as in C. A script is
 * all that follows, or stands in a block between lines of three backquotes.
 *
 * @return what was asked for, in order; empty when nothing was understood
 */
std::vector<PlainRequest> ParsePlainRequests(const std::string& Prompt);
