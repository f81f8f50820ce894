#include "JsonFields.h"

Json ParseUntrustedJson(std::string_view Text)
{
	constexpr int DeepestNesting = 512;
	bool bTooDeep = false;
	const auto KeepShallow = [&bTooDeep](int Depth, Json::parse_event_t, Json&) {
		bTooDeep |= Depth > DeepestNesting;
		return !bTooDeep;
	};
	Json Parsed = Json::parse(Text, KeepShallow, false);
	return bTooDeep ? Json(Json::value_t::discarded) : Parsed;
}
