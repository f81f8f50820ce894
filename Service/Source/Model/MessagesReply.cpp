#include "MessagesReply.h"

#include "JsonFields.h"

namespace
{
constexpr size_t MaxBlocks = 1000;

/** Appends to a member that is text. */
void Append(Json& Object, const char* Key, const std::string& More)
{
	Json& Member = Object[Key];
	if (!Member.is_string())
	{
		Member = "";
	}
	Member.get_ref<Json::string_t&>() += More;
}
}

void MessagesReply::AddEvent(const std::string& Data)
{
	const Json Event = ParseUntrustedJson(Data);
	const std::string Type = ::GetText(Event, "type");
	if (!Event.is_object())
	{
		Fault = UpstreamFault{ FaultKind::Broken, "The model server sent an event that is not valid JSON.", {}, {} };
	}
	else if (Type == "error" || (Type.empty() && Event.contains("error")))
	{
		Fault = FaultFromErrorObject(Data);
	}
	else if (Type == "message_start")
	{
		AddUsage(GetMember(GetMember(Event, "message"), "usage"));
	}
	else if (Type == "content_block_start")
	{
		BeginBlock(Event);
	}
	else if (Type == "content_block_delta")
	{
		GrowBlock(Event);
	}
	else if (Type == "message_delta")
	{
		const std::string Reason = ::GetText(GetMember(Event, "delta"), "stop_reason");
		StopReason = Reason.empty() ? StopReason : Reason;
		AddUsage(GetMember(Event, "usage"));
	}
	else if (Type == "message_stop")
	{
		bEnded = true;
	}
}

void MessagesReply::BeginBlock(const Json& Event)
{
	if (Blocks.size() >= MaxBlocks)
	{
		Fault = UpstreamFault{ FaultKind::Broken, "The model server sent too many content blocks.", {}, {} };
		return;
	}
	PartialBlock& Block = Blocks[GetCount(Event, "index")];
	Block = { GetMember(Event, "content_block"), "" };
	if (!Block.Content.is_object())
	{
		Block.Content = Json::object();
	}
	Text += ::GetText(Block.Content, "type") == "text" ? ::GetText(Block.Content, "text") : "";
}

void MessagesReply::GrowBlock(const Json& Event)
{
	const auto Found = Blocks.find(GetCount(Event, "index"));
	if (Found == Blocks.end())
	{
		return;
	}
	PartialBlock& Block = Found->second;
	const Json& Delta = GetMember(Event, "delta");
	const std::string Type = ::GetText(Delta, "type");
	if (Type == "text_delta")
	{
		Append(Block.Content, "text", ::GetText(Delta, "text"));
		Text += ::GetText(Delta, "text");
	}
	else if (Type == "input_json_delta")
	{
		Block.Input += ::GetText(Delta, "partial_json");
	}
	else if (Type == "thinking_delta")
	{
		Append(Block.Content, "thinking", ::GetText(Delta, "thinking"));
	}
	else if (Type == "signature_delta")
	{
		Block.Content["signature"] = GetMember(Delta, "signature");
	}
}

void MessagesReply::AddWholeReply(const Json& Body)
{
	int64_t Index = 0;
	for (const Json& Each : GetList(Body, "content"))
	{
		const Json& Input = GetMember(Each, "input");
		Blocks[Index++] = { Each, Input.is_object() ? ToRequestBody(Input) : "" };
		Text += ::GetText(Each, "text");
	}
	StopReason = ::GetText(Body, "stop_reason");
	AddUsage(GetMember(Body, "usage"));
	bEnded = GetMember(Body, "content").is_array();
}

void MessagesReply::AddUsage(const Json& Reported)
{
	// Cumulative; what a later event leaves out or gives as null keeps its value.
	const auto Update = [&Reported](const char* Key, int64_t& Count) {
		Count = GetMember(Reported, Key).is_number_integer() ? GetCount(Reported, Key) : Count;
	};
	Update("input_tokens", UncachedInput);
	Update("cache_creation_input_tokens", WrittenInput);
	Update("cache_read_input_tokens", Usage.CachedInput);
	Update("output_tokens", Usage.Output);
	Usage.Input = UncachedInput + WrittenInput + Usage.CachedInput;
}

ReplyBlock MessagesReply::MakeBlock(const PartialBlock& Block) const
{
	const std::string Type = ::GetText(Block.Content, "type");
	if (Type == "text")
	{
		return TextBlock{ ::GetText(Block.Content, "text") };
	}
	if (Type == "tool_use")
	{
		ToolCall Call{ ::GetText(Block.Content, "id"), ::GetText(Block.Content, "name"), Json::object(), "" };
		SetInput(Call, Block.Input);
		return Call;
	}
	return OpaqueBlock{ Block.Content };
}

std::optional<ModelReply> MessagesReply::Finish()
{
	if (!bEnded)
	{
		return std::nullopt;
	}
	ModelReply Reply;
	Reply.Usage = Usage;
	Reply.End = StopReason == "max_tokens" || StopReason == "model_context_window_exceeded" ? ReplyEnd::CutOff
				: StopReason == "refusal"                                                   ? ReplyEnd::Withheld
																							: ReplyEnd::Finished;
	for (const auto& [Index, Block] : Blocks)
	{
		Reply.Message.Blocks.push_back(MakeBlock(Block));
	}
	return Reply;
}
