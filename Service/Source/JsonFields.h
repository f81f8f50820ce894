#pragma once

#include "Responder.h"

#include <algorithm>
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

/** Zero when the member is missing, negative or no number; at most a trillion, so that sums of them do not overflow. */
inline int64_t GetCount(const Json& Object, const char* Key)
{
	constexpr uint64_t Highest = 1'000'000'000'000;
	const Json& Member = GetMember(Object, Key);
	// Compared as it is held: beyond the highest signed number, a comparison with zero would wrap around.
	const bool bCount = Member.is_number_unsigned() || (Member.is_number_integer() && Member >= 0);
	return bCount ? static_cast<int64_t>(std::min(Member.get<uint64_t>(), Highest)) : 0;
}

/** Empty when the member is missing or no array. It lives as long as the object. */
inline const Json& GetList(const Json& Object, const char* Key)
{
	static const Json None = Json::array();
	return Object.is_object() && Object.contains(Key) && Object[Key].is_array() ? Object[Key] : None;
}
