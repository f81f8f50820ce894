#include "History.h"

#include "JsonFields.h"

#include <algorithm>
#include <cctype>
#include <random>
#include <set>

namespace
{
/** What a call is answered with that the client did not answer. */
ToolResult MakeMissingResult(const ToolCall& Call)
{
	// A build goes on after the turn; its messages come with a later one.
	const bool bBuild = Call.Name == "compile";
	return { Call.Id,
		bBuild ? "The build has started. Its messages will be part of a later message of the user."
			   : "Not run: the conversation went on without a result.",
		!bBuild };
}

void AppendParagraph(std::string& Text, const std::string& More)
{
	Text += (Text.empty() || More.empty() ? "" : "\n\n") + More;
}

std::string DescribeStray(const ToolResult& Result)
{
	return "Result of an earlier tool call (" + std::string(Result.bError ? "failed" : "succeeded") + "):\n" +
		   Result.Content;
}

/** What both formats take. */
bool IsPlainId(const std::string& Id)
{
	constexpr size_t Longest = 64;
	return !Id.empty() && Id.size() <= Longest && std::all_of(Id.begin(), Id.end(), [](unsigned char C) {
		return C < 0x80 && (std::isalnum(C) || C == '_' || C == '-');
	});
}

Json BlockToJson(const TextBlock& Block)
{
	return { { "text", Block.Text } };
}

Json BlockToJson(const ToolCall& Block)
{
	return { { "id", Block.Id }, { "name", Block.Name }, { "input", Block.Input }, { "error", Block.InputError } };
}

Json BlockToJson(const OpaqueBlock& Block)
{
	return { { "opaque", Block.Content } };
}

ReplyBlock BlockFromJson(const Json& Block)
{
	if (Block.contains("opaque"))
	{
		return OpaqueBlock{ Block["opaque"] };
	}
	if (Block.contains("id"))
	{
		const Json& Input = GetMember(Block, "input");
		return ToolCall{ GetText(Block, "id"), GetText(Block, "name"), Input.is_object() ? Input : Json::object(),
			GetText(Block, "error") };
	}
	return TextBlock{ GetText(Block, "text") };
}

Json UserToJson(const UserMessage& Message)
{
	Json Results = Json::array();
	for (const ToolResult& Each : Message.Results)
	{
		Results.push_back({ { "id", Each.CallId }, { "content", Each.Content }, { "error", Each.bError } });
	}
	return { { "text", Message.Text }, { "results", Results } };
}

UserMessage UserFromJson(const Json& Document)
{
	UserMessage Message{ {}, GetText(Document, "text") };
	for (const Json& Each : GetList(Document, "results"))
	{
		Message.Results.push_back({ GetText(Each, "id"), GetText(Each, "content"), GetMember(Each, "error") == true });
	}
	return Message;
}
}

std::string NewToolCallId()
{
	static const char Letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
	constexpr size_t Length = 9;
	std::random_device Random;
	std::string Id;
	while (Id.size() < Length)
	{
		Id += Letters[Random() % (sizeof(Letters) - 1)];
	}
	return Id;
}

std::string ModelMessage::GetText() const
{
	std::string Text;
	for (const ReplyBlock& Each : Blocks)
	{
		if (const TextBlock* const Block = std::get_if<TextBlock>(&Each))
		{
			AppendParagraph(Text, Block->Text);
		}
	}
	return Text;
}

std::vector<const ToolCall*> ModelMessage::GetCalls() const
{
	std::vector<const ToolCall*> Calls;
	for (const ReplyBlock& Each : Blocks)
	{
		if (const ToolCall* const Call = std::get_if<ToolCall>(&Each))
		{
			Calls.push_back(Call);
		}
	}
	return Calls;
}

void History::AddUserMessage(const std::string& Text, const std::vector<ToolResult>& Results)
{
	std::set<const ToolResult*> Used;
	for (const ToolCall* Call : GetOpenCalls())
	{
		const auto Found = std::find_if(
			Results.begin(), Results.end(), [Call](const ToolResult& Each) { return Each.CallId == Call->Id; });
		Pending.Results.push_back(Found == Results.end() ? MakeMissingResult(*Call) : *Found);
		Used.insert(Found == Results.end() ? nullptr : &*Found);
		if (Pending.Results.back().Content.empty())
		{
			Pending.Results.back().Content = "(no output)";
		}
	}
	bPendingAnswersCalls = true;
	for (const ToolResult& Each : Results)
	{
		if (!Used.count(&Each))
		{
			AppendParagraph(Pending.Text, DescribeStray(Each));
		}
	}
	AppendParagraph(Pending.Text, Text);
	if (Pending.Results.empty() && Pending.Text.empty())
	{
		Pending.Text = "Continue.";
	}
}

void History::AddReply(ModelMessage Reply)
{
	const auto IsEmpty = [](const ReplyBlock& Each) {
		const TextBlock* const Text = std::get_if<TextBlock>(&Each);
		return Text && Text->Text.find_first_not_of(" \t\r\n") == std::string::npos;
	};
	Reply.Blocks.erase(std::remove_if(Reply.Blocks.begin(), Reply.Blocks.end(), IsEmpty), Reply.Blocks.end());
	if (Reply.GetCalls().empty() && Reply.GetText().empty())
	{
		Reply.Blocks.push_back(TextBlock{ "(The model gave no answer.)" });
	}
	MakeIdsUnique(Reply);
	Exchanges.push_back({ std::move(Pending), std::move(Reply) });
	Pending = {};
	bPendingAnswersCalls = false;
}

bool History::IsIdUsed(const std::string& Id) const
{
	return std::any_of(Exchanges.begin(), Exchanges.end(), [&Id](const Exchange& Each) {
		const std::vector<const ToolCall*> Calls = Each.Reply.GetCalls();
		return std::any_of(Calls.begin(), Calls.end(), [&Id](const ToolCall* Call) { return Call->Id == Id; });
	});
}

void History::MakeIdsUnique(ModelMessage& Reply) const
{
	std::set<std::string> Ids;
	for (ReplyBlock& Each : Reply.Blocks)
	{
		if (ToolCall* const Call = std::get_if<ToolCall>(&Each))
		{
			Call->Id = IsPlainId(Call->Id) ? Call->Id : NewToolCallId();
			while (IsIdUsed(Call->Id) || !Ids.insert(Call->Id).second)
			{
				Call->Id = NewToolCallId();
			}
		}
	}
}

std::vector<const ToolCall*> History::GetOpenCalls() const
{
	return Exchanges.empty() || bPendingAnswersCalls ? std::vector<const ToolCall*>{}
													 : Exchanges.back().Reply.GetCalls();
}

const ToolCall* History::FindOpenCall(const std::string& Id) const
{
	const std::vector<const ToolCall*> Open = GetOpenCalls();
	const auto Found = std::find_if(Open.begin(), Open.end(), [&Id](const ToolCall* Call) { return Call->Id == Id; });
	return Found == Open.end() ? nullptr : *Found;
}

void History::Summarize(size_t NumExchanges, const std::string& Summary)
{
	UserMessage& First = NumExchanges < Exchanges.size() ? Exchanges[NumExchanges].Request : Pending;
	std::string Text = "Summary of the conversation so far:\n" + Summary;
	// The calls that these results answer are gone.
	for (const ToolResult& Each : First.Results)
	{
		AppendParagraph(Text, DescribeStray(Each));
	}
	First.Results.clear();
	AppendParagraph(Text, First.Text);
	First.Text = Text;
	Exchanges.erase(Exchanges.begin(), Exchanges.begin() + static_cast<std::ptrdiff_t>(NumExchanges));
}

Json History::ToJson() const
{
	Json Done = Json::array();
	for (const Exchange& Each : Exchanges)
	{
		Json Blocks = Json::array();
		for (const ReplyBlock& Block : Each.Reply.Blocks)
		{
			Blocks.push_back(std::visit([](const auto& Kind) { return BlockToJson(Kind); }, Block));
		}
		Done.push_back({ { "request", UserToJson(Each.Request) }, { "reply", Blocks } });
	}
	return { { "exchanges", Done }, { "pending", UserToJson(Pending) }, { "answered", bPendingAnswersCalls } };
}

bool History::FromJson(const Json& Document)
{
	if (!Document.is_object() || !GetMember(Document, "exchanges").is_array())
	{
		return false;
	}
	Exchanges.clear();
	for (const Json& Each : Document["exchanges"])
	{
		Exchange Loaded{ UserFromJson(GetMember(Each, "request")), {} };
		for (const Json& Block : GetList(Each, "reply"))
		{
			Loaded.Reply.Blocks.push_back(BlockFromJson(Block));
		}
		Exchanges.push_back(std::move(Loaded));
	}
	Pending = UserFromJson(GetMember(Document, "pending"));
	bPendingAnswersCalls = GetMember(Document, "answered") == true;
	return true;
}
