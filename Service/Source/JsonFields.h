#pragma once

#include "Responder.h"

#include <string>

// Members of what a client sent, which may be of any type.

/** Empty when the member is missing or no text. */
inline std::string GetText(const Json& Object, const char* Key)
{
	return Object.is_object() && Object.contains(Key) && Object[Key].is_string() ? Object[Key].get<std::string>() : "";
}

/** Empty when the member is missing or no array. It lives as long as the object. */
inline const Json& GetList(const Json& Object, const char* Key)
{
	static const Json None = Json::array();
	return Object.is_object() && Object.contains(Key) && Object[Key].is_array() ? Object[Key] : None;
}
