#include "ChatCompletionsReply.h"

#include "JsonFields.h"

#include <algorithm>

namespace
{
/** More than any model uses at once; a server that sends more is broken. */
constexpr size_t MaxCalls = 128;

/** Without the reasoning that a server leaves in front of the answer when it has no parser for it. */
std::string StripReasoning(const std::string& Text)
{
	static const std::string Open = "<think>";
	static const std::string Close = "</think>";
	const size_t Start = Text.find_first_not_of(" \t\r\n");
	const size_t End = Text.find(Close);
	const bool bHasReasoning = Start != std::string::npos && Text.compare(Start, Open.size(), Open) == 0;
	return bHasReasoning && End != std::string::npos ? Text.substr(End + Close.size()) : Text;
}
}

void ChatCompletionsReply::AddEvent(const std::string& Data)
{
	if (Data == "[DONE]")
	{
		bEnded = true;
		return;
	}
	const Json Chunk = ParseUntrustedJson(Data);
	if (!Chunk.is_object())
	{
		Fault = UpstreamFault{ FaultKind::Broken, "The model server sent an event that is not valid JSON.", {}, {} };
		return;
	}
	if (!GetMember(Chunk, "error").is_null())
	{
		Fault = FaultFromErrorObject(Data);
		return;
	}
	for (const Json& Choice : GetList(Chunk, "choices"))
	{
		AddChoice(Choice, "delta");
	}
	AddUsage(Chunk);
}

void ChatCompletionsReply::AddWholeReply(const Json& Body)
{
	for (const Json& Choice : GetList(Body, "choices"))
	{
		AddChoice(Choice, "message");
		bEnded = true;
	}
	AddUsage(Body);
}

void ChatCompletionsReply::AddChoice(const Json& Choice, const char* MessageKey)
{
	const Json& Message = GetMember(Choice, MessageKey);
	Text += ::GetText(Message, "content") + ::GetText(Message, "refusal");
	const Json& Pieces = GetList(Message, "tool_calls");
	for (size_t Position = 0; Position < Pieces.size(); ++Position)
	{
		AddPiece(Pieces[Position], Position);
	}
	const std::string Reason = ::GetText(Choice, "finish_reason");
	FinishReason = Reason.empty() ? FinishReason : Reason;
}

ChatCompletionsReply::PartialCall& ChatCompletionsReply::FindCall(const Json& Piece, size_t Position)
{
	const std::string Id = ::GetText(Piece, "id");
	const bool bHasIndex = GetMember(Piece, "index").is_number_integer();
	if (!bHasIndex && Id.empty() && !Calls.empty() && ::GetText(GetMember(Piece, "function"), "name").empty())
	{
		return Calls.back();
	}
	const int64_t Index = bHasIndex ? Piece["index"].get<int64_t>() : static_cast<int64_t>(Position);
	const auto Found = std::find_if(
		CallsByIndex.rbegin(), CallsByIndex.rend(), [Index](const auto& Each) { return Each.first == Index; });
	if (Found != CallsByIndex.rend())
	{
		PartialCall& Call = Calls[Found->second];
		// Some servers give every call the index 0, or none: a new id is a new call.
		if (Id.empty() ? bHasIndex : Call.Id == Id || Call.Id.empty())
		{
			return Call;
		}
	}
	CallsByIndex.emplace_back(Index, Calls.size());
	return Calls.emplace_back();
}

void ChatCompletionsReply::AddPiece(const Json& Piece, size_t Position)
{
	if (Calls.size() >= MaxCalls)
	{
		Fault = UpstreamFault{ FaultKind::Broken, "The model server sent too many tool calls at once.", {}, {} };
		return;
	}
	PartialCall& Call = FindCall(Piece, Position);
	const Json& Function = GetMember(Piece, "function");
	const std::string Id = ::GetText(Piece, "id");
	const std::string Name = ::GetText(Function, "name");
	Call.Id = Id.empty() ? Call.Id : Id;
	Call.Name += Name == Call.Name ? "" : Name;
	const Json& Arguments = GetMember(Function, "arguments");
	// Some servers send an object where the format has a string.
	Call.Arguments += Arguments.is_string()   ? Arguments.get<std::string>()
					  : Arguments.is_object() ? ToRequestBody(Arguments)
											  : "";
}

void ChatCompletionsReply::AddUsage(const Json& Body)
{
	const Json& Reported = GetMember(Body, "usage");
	if (Reported.is_object())
	{
		Usage.Input = GetCount(Reported, "prompt_tokens");
		Usage.CachedInput = GetCount(GetMember(Reported, "prompt_tokens_details"), "cached_tokens");
		Usage.Output = GetCount(Reported, "completion_tokens");
	}
}

std::optional<ModelReply> ChatCompletionsReply::Finish()
{
	if (!bEnded && FinishReason.empty())
	{
		return std::nullopt;
	}
	ModelReply Reply;
	Reply.Usage = Usage;
	Reply.End = FinishReason == "length"           ? ReplyEnd::CutOff
				: FinishReason == "content_filter" ? ReplyEnd::Withheld
												   : ReplyEnd::Finished;
	if (const std::string Answer = StripReasoning(Text); !Answer.empty())
	{
		Reply.Message.Blocks.push_back(TextBlock{ Answer });
	}
	for (const PartialCall& Each : Calls)
	{
		ToolCall Call{ Each.Id, Each.Name, Json::object(), "" };
		SetInput(Call, Each.Arguments);
		Reply.Message.Blocks.push_back(Call);
	}
	return Reply;
}
