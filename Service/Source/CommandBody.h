#pragma once

#include "Responder.h"

/** Without overlong forms, surrogates and code points past the last. */
bool IsUtf8(const std::string& Text);

/**
 * Reads the body of a command.
 *
 * A client may put the user's message into its template without escaping it, so that a quote or a line break makes the
 * body invalid JSON. Such a body is still understood, as long as it has the template's form:
 * {"message": "…"} or {"tool_results": […], "message": "…"}.
 * JSON that is nested deeper than any client writes is refused.
 */
std::optional<Turn> ParseCommandBody(const std::string& Body);
