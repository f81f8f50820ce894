#pragma once

#include "PlainRequest.h"
#include "Responder.h"

/** A tool's result in words, for the person who asked for it. Long texts are cut. */
std::string DescribeResult(const PlainRequest& Request, const Json& Result);
