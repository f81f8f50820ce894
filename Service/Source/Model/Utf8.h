#pragma once

#include <algorithm>
#include <string>

/** The largest place at or before Limit at which no UTF-8 character is cut in two. */
inline size_t FindCharacterStart(const std::string& Text, size_t Limit)
{
	size_t At = std::min(Limit, Text.size());
	while (At > 0 && At < Text.size() && (static_cast<unsigned char>(Text[At]) & 0xC0) == 0x80)
	{
		--At;
	}
	return At;
}
