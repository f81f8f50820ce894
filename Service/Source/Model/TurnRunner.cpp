#include "TurnRunner.h"

#include "JsonFields.h"
#include "Metrics.h"
#include "ToolCatalog.h"

#include <algorithm>
#include <chrono>

namespace
{
/** A model that cannot form a call after this many hints in a row never will. */
constexpr int MaxInvalidReplies = 5;

Json MakeFailure(const std::string& Error)
{
	return { { "status", "FAILED" }, { "error", Error } };
}

Json MakeAnswer(const Json& Blocks, bool bAutoContinue)
{
	return { { "status", "COMPLETED" },
		{ "response", { { "response", Blocks }, { "auto_continue", bAutoContinue } } } };
}

Json MakeText(const std::string& Text)
{
	return { { "type", "text" }, { "text", Text } };
}

Json MakeToolUse(const ToolCall& Call)
{
	return { { "type", "tool_use" }, { "id", Call.Id }, { "name", Call.Name }, { "input", Call.Input } };
}

/** Text of a tool call that the server should have parsed. */
bool HasUnparsedCall(const ModelReply& Reply)
{
	const std::string Text = Reply.Message.GetText();
	return Reply.Message.GetCalls().empty() &&
		   (Text.find("<tool_call>") != std::string::npos || Text.find("<function=") != std::string::npos);
}

bool IsFinish(const ToolCall* Call)
{
	return Call && Call->Name == "finish";
}
}

TurnRunner::TurnRunner(ModelContext& InContext)
	: Context(InContext)
	, Client(Context.Config)
	, Budget(Context.Config)
	, Compactor(Budget, Client)
{
}

std::optional<ToolCall> TurnRunner::Begin(const Turn& UserTurn)
{
	Project.EngineVersion = UserTurn.EngineVersion;
	Project.Tree = DescribeProjectTree(UserTurn.FileStructure, ContextBudget::BytesFor(Context.Config.TreeTokens));
	Project.RulesFile = FindRulesFile(UserTurn.FileStructure);
	System = MakeSystemPrompt(Project);
	if (Project.RulesFile.empty())
	{
		return std::nullopt;
	}
	RulesCallId = NewToolCallId();
	return ToolCall{ RulesCallId, "read_file", { { "path", Project.RulesFile } }, "" };
}

void TurnRunner::TakeRules(std::vector<ToolResult>& Results)
{
	const auto Found = std::find_if(
		Results.begin(), Results.end(), [this](const ToolResult& Each) { return Each.CallId == RulesCallId; });
	if (Found != Results.end())
	{
		Project.Rules = Found->bError ? "" : Found->Content;
		System = MakeSystemPrompt(Project);
		Results.erase(Found);
	}
	RulesCallId.clear();
}

void TurnRunner::NoteResult(ToolResult& Result, const Json& Sent)
{
	if (GetMember(Sent, "is_abort") == true)
	{
		Result.Content = "Not run: the user did not approve it and wrote something else instead.";
		Result.bError = true;
		return;
	}
	if (const ToolCall* const Call = Conversation.FindOpenCall(Result.CallId))
	{
		NoteOutcome(*Call, Result);
	}
}

void TurnRunner::NoteOutcome(const ToolCall& Call, ToolResult& Result)
{
	Failures.Note(Call, Result.bError);
	if (Failures.IsHopeless(Call))
	{
		Result.Content += "\n\nThis identical call has failed " + std::to_string(RepeatedFailures::Tolerated) +
						  " times. Do not repeat it: do something else, or ask the user.";
	}
}

std::vector<ToolResult> TurnRunner::ReadResults(const Json& Results, std::string& Text)
{
	std::vector<ToolResult> Read;
	for (const Json& Each : Results.is_array() ? Results : Json::array())
	{
		ToolResult Result{ GetText(Each, "tool_use_id"), Budget.Truncate(GetText(Each, "content")),
			GetMember(Each, "is_error") == true };
		// The editor builds by itself after these buttons.
		if (Result.CallId == "Undo" || Result.CallId == "Redo")
		{
			Text += "The user has pressed " + Result.CallId + ": read files again before you rely on them. The build " +
					(Result.bError ? "failed:\n" : "succeeded:\n") + Result.Content + "\n\n";
			continue;
		}
		NoteResult(Result, Each);
		Read.push_back(std::move(Result));
	}
	return Read;
}

Json TurnRunner::Run(const Turn& UserTurn, RunningTurn& Running)
{
	std::string Text;
	std::vector<ToolResult> Results = ReadResults(UserTurn.ToolResults, Text);
	if (System.empty())
	{
		if (const std::optional<ToolCall> ReadRules = Begin(UserTurn))
		{
			DelayedMessage = UserTurn.Message;
			return MakeAnswer(Json::array({ MakeToolUse(*ReadRules) }), MayContinue(*ReadRules));
		}
	}
	EndReadingRules(UserTurn, Results, Text);
	const bool bFinished = !Results.empty() && std::all_of(Results.begin(), Results.end(), [this](const auto& Each) {
		return IsFinish(Conversation.FindOpenCall(Each.CallId));
	});
	if (!UserTurn.Message.empty())
	{
		Failures.Clear();
	}
	if (Text.empty() && UserTurn.Message.empty() && Results.empty() && IsOnlyBuilding())
	{
		// An approved build goes on after its turn. Its call stays open until the messages come.
		return MakeAnswer(
			Json::array({ MakeText("The game is being built. Write \"continue\" when the build has ended: its "
								   "messages reach me then.") }),
			true);
	}
	Conversation.AddUserMessage(Text + UserTurn.Message, Results);
	return bFinished && UserTurn.Message.empty() ? MakeAnswer(Json::array(), true) : Answer(UserTurn.KeyName, Running);
}

void TurnRunner::EndReadingRules(const Turn& UserTurn, std::vector<ToolResult>& Results, std::string& Text)
{
	if (!RulesCallId.empty())
	{
		TakeRules(Results);
		Text += DelayedMessage + (UserTurn.Message.empty() ? "" : "\n\n");
	}
}

void TurnRunner::Absorb(const Turn& UserTurn)
{
	std::string Text;
	std::vector<ToolResult> Results = ReadResults(UserTurn.ToolResults, Text);
	if (System.empty())
	{
		// Nobody was asked to read the rules, so nothing waits for them.
		Begin(UserTurn);
		RulesCallId.clear();
	}
	EndReadingRules(UserTurn, Results, Text);
	if (!Text.empty() || !UserTurn.Message.empty() || !Results.empty())
	{
		Conversation.AddUserMessage(Text + UserTurn.Message, Results);
	}
}

bool TurnRunner::IsOnlyBuilding() const
{
	const std::vector<const ToolCall*> Open = Conversation.GetOpenCalls();
	return !Open.empty() &&
		   std::all_of(Open.begin(), Open.end(), [](const ToolCall* Call) { return Call->Name == "compile"; });
}

bool TurnRunner::MayContinue(const ToolCall& Call) const
{
	const std::vector<std::string>& Allowed = Context.Config.AutoContinueTools;
	return std::find(Allowed.begin(), Allowed.end(), Call.Name) != Allowed.end();
}

ModelRequest TurnRunner::MakeRequest() const
{
	return { System, &Conversation.GetExchanges(), &Conversation.GetPending(), &ToolCatalog::Get().GetTools(),
		Context.Config.Server.MaxOutputTokens };
}

void TurnRunner::RecordUsage(const std::string& KeyName, const ModelUsage& Usage, double Seconds, RunningTurn& Running)
{
	const ModelConsumption More = ModelConsumption::Of(Usage, Seconds, Context.Config.Prices);
	Used.Add(More);
	Context.Today.Add(KeyName, More);
	GetMetrics().Add(Metric::ModelRequests, KeyName);
	GetMetrics().Add(Metric::Tokens, KeyName, static_cast<double>(More.Tokens));
	GetMetrics().Add(Metric::Cost, KeyName, More.Cost);
	Running.AddTokens(More.Tokens);
}

ModelResult TurnRunner::AskModel(const std::string& KeyName, RunningTurn& Running)
{
	const auto Started = std::chrono::steady_clock::now();
	ModelUsage Usage;
	const ModelRequest Request = MakeRequest();
	UpstreamRequest Prepared;
	std::optional<UpstreamFault> Fault = Compactor.Fit(Conversation, Request, Running, Prepared, Usage);
	ModelResult Result = Fault ? ModelResult(*Fault) : Client.Ask(Prepared, Running);
	Fault =
		std::holds_alternative<UpstreamFault>(Result) ? std::optional(std::get<UpstreamFault>(Result)) : std::nullopt;
	if (Fault && Fault->Kind == FaultKind::ContextTooLong && !Conversation.GetExchanges().empty())
	{
		// The estimate was too low: once more, with a shorter conversation.
		Budget.Tighten();
		Fault = Compactor.Fit(Conversation, Request, Running, Prepared, Usage);
		Result = Fault ? ModelResult(*Fault) : Client.Ask(Prepared, Running);
	}
	if (const ModelReply* const Reply = std::get_if<ModelReply>(&Result))
	{
		bTruncatedByServer |= Budget.Learn(Prepared.Body.size(), Reply->Usage.Input);
		Usage.Input += Reply->Usage.Input;
		Usage.CachedInput += Reply->Usage.CachedInput;
		Usage.Output += Reply->Usage.Output;
	}
	RecordUsage(
		KeyName, Usage, std::chrono::duration<double>(std::chrono::steady_clock::now() - Started).count(), Running);
	return Result;
}

std::vector<ToolResult> TurnRunner::CheckCalls(ModelReply& Reply)
{
	std::vector<ToolResult> Results;
	bool bAllValid = true;
	const size_t NumCalls = Reply.Message.GetCalls().size();
	for (ReplyBlock& Each : Reply.Message.Blocks)
	{
		ToolCall* const Call = std::get_if<ToolCall>(&Each);
		if (!Call)
		{
			continue;
		}
		const ToolCall Original = *Call;
		if (Reply.End == ReplyEnd::CutOff && Results.size() + 1 == NumCalls)
		{
			Call->InputError =
				"The answer reached its limit of output tokens here, so that the call is incomplete. Use "
				"smaller calls.";
		}
		const std::string Problem = ToolCatalog::Get().Check(*Call);
		bAllValid &= Problem.empty();
		Results.push_back({ Call->Id,
			Problem.empty() ? "Not run, because another call of the same answer was invalid. Repeat it."
							: "Invalid call, not run: " + Problem,
			true });
		if (!Problem.empty())
		{
			NoteOutcome(Original, Results.back());
		}
	}
	return bAllValid ? std::vector<ToolResult>{} : Results;
}

Json TurnRunner::Complete(const ModelReply& Reply)
{
	std::string Text = Reply.Message.GetText();
	const auto AddNote = [&Text](const std::string& Note) { Text += (Text.empty() ? "" : "\n\n") + Note; };
	if (Reply.End == ReplyEnd::Withheld)
	{
		AddNote("(The model declined to answer this.)");
	}
	if (Reply.End == ReplyEnd::CutOff)
	{
		AddNote("(The answer has reached the limit of output tokens and ends here. Write \"continue\".)");
	}
	if (bTruncatedByServer && !std::exchange(bToldOfTruncation, true))
	{
		AddNote("(The model server seems to drop the beginning of long conversations: increase its context size, or "
				"set server.context_tokens to what it has.)");
	}
	Json Blocks = Json::array();
	bool bAutoContinue = true;
	const std::vector<const ToolCall*> Calls = Reply.Message.GetCalls();
	if (!Text.empty())
	{
		Blocks.push_back(MakeText(Text));
	}
	for (const ToolCall* Call : Calls)
	{
		Blocks.push_back(MakeToolUse(*Call));
		bAutoContinue &= MayContinue(*Call);
	}
	return MakeAnswer(Blocks, bAutoContinue);
}

Json TurnRunner::Answer(const std::string& KeyName, RunningTurn& Running)
{
	for (int NumInvalid = 0;;)
	{
		std::string Limit = FindReachedLimit(Used, Context.Config.PerConversation, LimitScope::Conversation);
		Limit = Limit.empty() ? FindReachedLimit(Context.Today.Get(), Context.Config.PerDay, LimitScope::Day) : Limit;
		Limit = Limit.empty() && Context.Keys ? Context.Keys->FindReachedBudget(KeyName) : Limit;
		if (!Limit.empty())
		{
			return MakeFailure(Limit);
		}
		ModelResult Result = AskModel(KeyName, Running);
		if (const UpstreamFault* const Fault = std::get_if<UpstreamFault>(&Result))
		{
			GetMetrics().Add(Metric::ModelFaults, "");
			return MakeFailure(Fault->Message);
		}
		ModelReply& Reply = std::get<ModelReply>(Result);
		if (HasUnparsedCall(Reply))
		{
			return MakeFailure("The model server does not parse tool calls, and sends them as text. Enable its tool "
							   "support for this model (Docs/Models.md).");
		}
		const std::vector<const ToolCall*> Asked = Reply.Message.GetCalls();
		const bool bHopeless = std::any_of(
			Asked.begin(), Asked.end(), [this](const ToolCall* Call) { return Failures.IsHopeless(*Call); });
		Conversation.AddReply(std::move(Reply.Message));
		Reply.Message = Conversation.GetExchanges().back().Reply;
		if (bHopeless)
		{
			return MakeAnswer(
				Json::array({ MakeText("I stopped, because the same call to a tool failed again and again. "
									   "Tell me how to go on.") }),
				true);
		}
		const std::vector<ToolResult> Invalid = CheckCalls(Reply);
		if (Invalid.empty())
		{
			return Complete(Reply);
		}
		if (++NumInvalid >= MaxInvalidReplies)
		{
			return MakeFailure("The model does not call the tools correctly. The last problem: " +
							   Invalid.back().Content + " (Docs/Models.md says what helps.)");
		}
		Conversation.AddUserMessage("", Invalid);
	}
}

Json TurnRunner::ToJson() const
{
	return { { "history", Conversation.ToJson() }, { "failures", Failures.ToJson() }, { "system", System },
		{ "tree", Project.Tree }, { "engine_version", Project.EngineVersion }, { "rules_file", Project.RulesFile },
		{ "rules_call", RulesCallId }, { "delayed_message", DelayedMessage }, { "requests", Used.Requests },
		{ "tokens", Used.Tokens }, { "minutes", Used.Minutes }, { "cost", Used.Cost },
		{ "told_of_truncation", bToldOfTruncation } };
}

bool TurnRunner::FromJson(const Json& State)
{
	const auto GetReal = [&State](const char* Key) {
		return GetMember(State, Key).is_number() ? State[Key].get<double>() : 0.0;
	};
	if (!Conversation.FromJson(GetMember(State, "history")))
	{
		return false;
	}
	Failures.FromJson(GetMember(State, "failures"));
	System = GetText(State, "system");
	Project = { GetText(State, "engine_version"), GetText(State, "tree"), GetText(State, "rules_file"), "" };
	RulesCallId = GetText(State, "rules_call");
	DelayedMessage = GetText(State, "delayed_message");
	Used = { GetCount(State, "requests"), GetCount(State, "tokens"), GetReal("minutes"), GetReal("cost") };
	bToldOfTruncation = GetMember(State, "told_of_truncation") == true;
	return !System.empty();
}
