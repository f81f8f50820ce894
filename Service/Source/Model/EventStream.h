#pragma once

#include <functional>
#include <string>
#include <string_view>

/**
 * Splits a stream of server-sent events into the data of each.
 *
 * Takes bytes as they come, split anywhere. Lines end with LF, CR LF or CR; comments and fields other than data are
 * ignored, since the JSON of an event repeats its name.
 */
class EventStream
{
public:
	/** A server that sends longer events is broken or hostile. */
	static constexpr size_t MaxEventBytes = 16u << 20;

	using EventFunction = std::function<void(const std::string& Data)>;

	/** @return false once an event is longer than MaxEventBytes */
	bool Feed(std::string_view Bytes, const EventFunction& OnEvent);
	/** Ends the stream: an event that lacks its empty line counts. */
	void End(const EventFunction& OnEvent);

private:
	void TakeLine(const EventFunction& OnEvent);

	std::string Line;
	std::string Data;
	bool bHasData = false;
	bool bAfterCarriageReturn = false;
};
