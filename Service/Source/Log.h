#pragma once

#include "Responder.h"

/**
 * Writes a line to the standard error stream: a JSON object with the time (UTC), the event and the fields.
 *
 * Fields hold no keys, and nothing of what people, files and models say: that is for the members of 'content', which
 * are left out unless the service was told to log it.
 */
void WriteLog(const std::string& Event, const Json& Fields = Json::object(), const Json& Content = Json::object());

/** Called before there are several threads. */
void LogContent(bool bLogContent);
