#include "HistoryCompactor.h"

#include "Utf8.h"

#include <algorithm>

namespace
{
/** Recent exchanges are what the model works with. */
constexpr size_t NumKept = 2;
constexpr size_t ShortBytes = 200;
constexpr int MaxSummaryTokens = 1500;

const char* const SummarySystem =
	"You summarize a conversation between a user and an assistant that works on an Unreal Engine project with tools. "
	"Keep what is needed to go on: the task, decisions, names and paths, what was changed, what failed, what is open. "
	"Write plain text, at most 400 words.";

size_t CountLines(const std::string& Text)
{
	return static_cast<size_t>(std::count(Text.begin(), Text.end(), '\n')) + 1;
}

/** The beginning and the end of a text. */
std::string DropMiddle(const std::string& Text, size_t MaxBytes)
{
	if (Text.size() <= MaxBytes)
	{
		return Text;
	}
	const size_t HeadEnd = FindCharacterStart(Text, MaxBytes / 2);
	const size_t TailStart = FindCharacterStart(Text, Text.size() - MaxBytes / 2);
	return Text.substr(0, HeadEnd) + "\n[... " + std::to_string(TailStart - HeadEnd) +
		   " bytes dropped to save space ...]\n" + Text.substr(TailStart);
}

/** What a result was, in one line. */
std::string Shorten(const ToolResult& Result)
{
	if (Result.Content.size() <= ShortBytes)
	{
		return Result.Content;
	}
	const size_t FirstLine = std::min(Result.Content.find('\n'), ShortBytes / 2);
	return "[" + std::to_string(CountLines(Result.Content)) + " lines, dropped to save space; call the tool again if " +
		   "needed. It began: " + Result.Content.substr(0, FindCharacterStart(Result.Content, FirstLine)) + "]";
}

/** Long strings in the input of a call, such as a file's text. */
void ShortenInput(Json& Input)
{
	for (Json& Value : Input)
	{
		if (Value.is_string() && Value.get_ref<const Json::string_t&>().size() > ShortBytes)
		{
			const std::string& Text = Value.get_ref<const Json::string_t&>();
			Value = "[" + std::to_string(Text.size()) + " bytes, dropped to save space]";
		}
	}
}

void ShortenOldExchanges(History& Conversation)
{
	std::vector<Exchange>& Exchanges = Conversation.EditExchanges();
	for (size_t Index = 0; Index + NumKept < Exchanges.size(); ++Index)
	{
		for (ToolResult& Each : Exchanges[Index].Request.Results)
		{
			Each.Content = Shorten(Each);
		}
		for (ReplyBlock& Each : Exchanges[Index].Reply.Blocks)
		{
			if (ToolCall* const Call = std::get_if<ToolCall>(&Each))
			{
				ShortenInput(Call->Input);
			}
		}
	}
}

/** Whatever a single message holds, it must not keep the conversation from going on. */
void TruncateLongTexts(History& Conversation, size_t MaxBytes)
{
	const auto Truncate = [MaxBytes](UserMessage& Message) {
		Message.Text = DropMiddle(Message.Text, MaxBytes);
		for (ToolResult& Each : Message.Results)
		{
			Each.Content = DropMiddle(Each.Content, MaxBytes);
		}
	};
	for (Exchange& Each : Conversation.EditExchanges())
	{
		Truncate(Each.Request);
		for (ReplyBlock& Block : Each.Reply.Blocks)
		{
			if (TextBlock* const Text = std::get_if<TextBlock>(&Block))
			{
				Text->Text = DropMiddle(Text->Text, MaxBytes);
			}
		}
	}
	Truncate(Conversation.EditPending());
}

std::string WriteTranscript(const std::vector<Exchange>& Exchanges, size_t NumExchanges)
{
	std::string Text;
	for (size_t Index = 0; Index < NumExchanges; ++Index)
	{
		for (const ToolResult& Each : Exchanges[Index].Request.Results)
		{
			Text += std::string(Each.bError ? "Failed: " : "Result: ") + Each.Content + "\n";
		}
		Text += Exchanges[Index].Request.Text.empty() ? "" : "User: " + Exchanges[Index].Request.Text + "\n";
		const std::string Said = Exchanges[Index].Reply.GetText();
		Text += Said.empty() ? "" : "Assistant: " + Said + "\n";
		for (const ToolCall* Call : Exchanges[Index].Reply.GetCalls())
		{
			Text += "Call: " + Call->Name + " " + ToRequestBody(Call->Input) + "\n";
		}
	}
	return Text;
}
}

std::optional<UpstreamFault> HistoryCompactor::Summarize(
	History& Conversation, RunningTurn& Turn, ModelUsage& InOutUsage)
{
	const size_t NumExchanges = Conversation.GetExchanges().size() / 2;
	std::string Transcript = WriteTranscript(Conversation.GetExchanges(), NumExchanges);
	Transcript.resize(
		FindCharacterStart(Transcript, ContextBudget::BytesFor(std::max<int64_t>(Budget.InputTokens() / 2, 0))));
	const UserMessage Task{ {}, "Summarize this conversation:\n\n" + Transcript };
	ModelResult Result = Client.Ask(Client.Prepare({ SummarySystem, nullptr, &Task, nullptr, MaxSummaryTokens }), Turn);
	if (UpstreamFault* const Fault = std::get_if<UpstreamFault>(&Result))
	{
		return std::move(*Fault);
	}
	const ModelReply& Reply = std::get<ModelReply>(Result);
	InOutUsage.Input += Reply.Usage.Input;
	InOutUsage.CachedInput += Reply.Usage.CachedInput;
	InOutUsage.Output += Reply.Usage.Output;
	Conversation.Summarize(NumExchanges, Reply.Message.GetText());
	return std::nullopt;
}

std::optional<UpstreamFault> HistoryCompactor::Fit(History& Conversation, const ModelRequest& Request,
	RunningTurn& Turn, UpstreamRequest& OutPrepared, ModelUsage& InOutUsage)
{
	const auto Fits = [&] {
		OutPrepared = Client.Prepare(Request);
		return Budget.Fits(OutPrepared.Body.size());
	};
	if (Fits())
	{
		return std::nullopt;
	}
	ShortenOldExchanges(Conversation);
	// No single text takes more than a small part of the context.
	TruncateLongTexts(Conversation, ContextBudget::BytesFor(std::max<int64_t>(Budget.InputTokens() / 16, 100)));
	while (!Fits())
	{
		if (Conversation.GetExchanges().size() < 2)
		{
			return UpstreamFault{ FaultKind::ContextTooLong,
				"The conversation is too long for the model, even without its older parts. Start a new one with a "
				"smaller task, or use a model with a larger context (server.context_tokens).",
				{}, {} };
		}
		if (std::optional<UpstreamFault> Fault = Summarize(Conversation, Turn, InOutUsage))
		{
			return Fault;
		}
	}
	return std::nullopt;
}
