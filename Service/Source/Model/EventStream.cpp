#include "EventStream.h"

#include <utility>

bool EventStream::Feed(std::string_view Bytes, const EventFunction& OnEvent)
{
	for (size_t At = 0; At < Bytes.size();)
	{
		if (bAfterCarriageReturn && Bytes[At] == '\n')
		{
			bAfterCarriageReturn = false;
			++At;
			continue;
		}
		const size_t End = Bytes.find_first_of("\r\n", At);
		Line.append(Bytes.substr(At, End == std::string_view::npos ? End : End - At));
		if (Line.size() + Data.size() > MaxEventBytes)
		{
			return false;
		}
		bAfterCarriageReturn = End != std::string_view::npos && Bytes[End] == '\r';
		if (End == std::string_view::npos)
		{
			break;
		}
		TakeLine(OnEvent);
		At = End + 1;
	}
	return true;
}

void EventStream::End(const EventFunction& OnEvent)
{
	TakeLine(OnEvent);
	TakeLine(OnEvent);
}

void EventStream::TakeLine(const EventFunction& OnEvent)
{
	static const std::string Field = "data:";
	if (Line.empty())
	{
		if (bHasData)
		{
			const std::string Event = std::exchange(Data, {});
			bHasData = false;
			OnEvent(Event);
		}
		return;
	}
	if (Line.rfind(Field, 0) == 0)
	{
		const bool bSpace = Line.size() > Field.size() && Line[Field.size()] == ' ';
		Data += (bHasData ? "\n" : "") + Line.substr(Field.size() + (bSpace ? 1 : 0));
		bHasData = true;
	}
	Line.clear();
}
