#pragma once

#include "Responder.h"

#include <cstdint>
#include <string>
#include <string_view>

/**
 * Parses JSON from outside.
 *
 * @return discarded when it is no JSON, or is nested deeper than 512 levels: values are copied and written recursively,
 * so that deeper ones could overflow the stack
 */
Json ParseUntrustedJson(std::string_view Text);

// Members of what a client or a server sent, which may be of any type.

/** Empty when the member is missing or no text. */
inline std::string GetText(const Json& Object, const char* Key)
{
	return Object.is_object() && Object.contains(Key) && Object[Key].is_string() ? Object[Key].get<std::string>() : "";
}

/** Null when the member is missing. It lives as long as the object. */
inline const Json& GetMember(const Json& Object, const char* Key)
{
	static const Json None;
	return Object.is_object() && Object.contains(Key) ? Object[Key] : None;
}

/** Zero when the member is missing, negative or no number. */
inline int64_t GetCount(const Json& Object, const char* Key)
{
	const Json& Member = GetMember(Object, Key);
	return Member.is_number_integer() && Member >= 0 ? Member.get<int64_t>() : 0;
}

/** Empty when the member is missing or no array. It lives as long as the object. */
inline const Json& GetList(const Json& Object, const char* Key)
{
	static const Json None = Json::array();
	return Object.is_object() && Object.contains(Key) && Object[Key].is_array() ? Object[Key] : None;
}
