#include "ModelClient.h"

#include "EventStream.h"
#include "JsonFields.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>

namespace
{
constexpr double JitterShare = 0.25;
constexpr double LongestHintSeconds = 60;
constexpr double LongestLoadingSeconds = 60;
constexpr double LoadingDelaySeconds = 2;
constexpr double BusyFactor = 4; // an overloaded server needs more time than one that stumbled
constexpr size_t MaxReplyBytes = 64u << 20;

double RandomShare()
{
	thread_local std::mt19937 Generator{ std::random_device{}() };
	return std::uniform_real_distribution<>(0.0, 1.0)(Generator);
}

/** A value with the key hidden in all of its texts and names. */
Json HideInValue(const Secret& Key, const Json& Value)
{
	if (Value.is_string())
	{
		return Key.HideIn(Value.get<std::string>());
	}
	if (!Value.is_structured())
	{
		return Value;
	}
	Json Hidden = Value.is_array() ? Json::array() : Json::object();
	for (const auto& [Name, Member] : Value.items())
	{
		if (Value.is_array())
		{
			Hidden.push_back(HideInValue(Key, Member));
		}
		else
		{
			Hidden[Key.HideIn(Name)] = HideInValue(Key, Member);
		}
	}
	return Hidden;
}

/** The body of a reply as it comes: a stream of events, one JSON document, or an error. */
class ReplyBody
{
public:
	explicit ReplyBody(ReplyAssembler& InAssembler)
		: Assembler(InAssembler)
	{
	}

	/** @return false when there is no use in more */
	bool Add(long Status, std::string_view Bytes)
	{
		NumBytes += Bytes.size();
		if (bStarted && Status == 200 && !bWhole)
		{
			return NumBytes < MaxReplyBytes && Feed(Bytes);
		}
		Whole += Bytes;
		const size_t First = Whole.find_first_not_of(" \t\r\n");
		if (Status == 200 && !bStarted && First != std::string::npos)
		{
			// Servers that do not know streaming send one document whatever was asked, under any content type.
			bStarted = true;
			bWhole = Whole[First] == '{';
			return bWhole || Feed(Whole);
		}
		return Whole.size() < MaxReplyBytes;
	}

	std::optional<UpstreamFault> End(const ReplyHead& Head)
	{
		if (Head.Status != 200)
		{
			return FaultFromReply(Head.Status, Head.Headers, Whole);
		}
		if (!bWhole)
		{
			// The last event may lack its end: then it is half of one, or the end mark of a careless server.
			Stream.End([this](const std::string& Data) {
				if (Data == "[DONE]" || !ParseUntrustedJson(Data).is_discarded())
				{
					AddEvent(Data);
				}
			});
			return Assembler.GetFault();
		}
		const Json Document = ParseUntrustedJson(Whole);
		if (!Document.is_object())
		{
			return UpstreamFault{ FaultKind::Broken, "The model server's answer is not valid JSON.", {}, {} };
		}
		if (!GetMember(Document, "error").is_null() || ::GetText(Document, "object") == "error")
		{
			return FaultFromErrorObject(Whole);
		}
		Assembler.AddWholeReply(Document);
		return std::nullopt;
	}

private:
	bool Feed(std::string_view Bytes)
	{
		return Stream.Feed(Bytes, [this](const std::string& Data) { AddEvent(Data); }) && !Assembler.GetFault();
	}

	void AddEvent(const std::string& Data)
	{
		if (!Assembler.GetFault())
		{
			Assembler.AddEvent(Data);
		}
	}

	ReplyAssembler& Assembler;
	EventStream Stream;
	std::string Whole;
	size_t NumBytes = 0;
	bool bStarted = false;
	bool bWhole = false;
};
}

std::optional<double> FindRetryDelay(
	const UpstreamFault& Fault, int Attempt, double Elapsed, const ModelConfig& Config, double Random)
{
	const bool bLoading = Fault.Kind == FaultKind::Loading && Elapsed < LongestLoadingSeconds;
	if (!Fault.CanRetry() || (Attempt >= Config.Retries.Attempts && !bLoading))
	{
		return std::nullopt;
	}
	const double Factor = Fault.Kind == FaultKind::Busy ? BusyFactor : 1;
	const double Growing = Config.Retries.FirstDelaySeconds * Factor * std::exp2(Attempt - 1);
	const double Usual = bLoading ? LoadingDelaySeconds : std::min(Growing, Config.Retries.LongestDelaySeconds);
	const double Delay = Fault.RetryAfterSeconds.value_or(Usual * (1 - JitterShare * Random));
	// Longer waits are for the user to decide on.
	const bool bTooLong = Delay > LongestHintSeconds || Elapsed + Delay > Config.Timeouts.Retry;
	return bTooLong ? std::nullopt : std::optional(Delay);
}

ModelClient::ModelClient(const ModelConfig& InConfig)
	: Config(InConfig)
	, Format(RequestFormat::Get(InConfig.Server.Format))
	, Http(Config.Server, Config.Timeouts)
{
}

UpstreamRequest ModelClient::Prepare(const ModelRequest& Request) const
{
	return Format.MakeRequest(Config.Server, Request);
}

void ModelClient::HideKey(ModelReply& Reply) const
{
	const Secret& Key = Config.Server.Key;
	for (ReplyBlock& Each : Reply.Message.Blocks)
	{
		if (TextBlock* const Text = std::get_if<TextBlock>(&Each))
		{
			Text->Text = Key.HideIn(std::move(Text->Text));
		}
		else if (ToolCall* const Call = std::get_if<ToolCall>(&Each))
		{
			Call->Id = Key.HideIn(std::move(Call->Id));
			Call->Name = Key.HideIn(std::move(Call->Name));
			Call->Input = HideInValue(Key, Call->Input);
			Call->InputError = Key.HideIn(std::move(Call->InputError));
		}
	}
	// Signed, so that a changed one would be refused.
	std::vector<ReplyBlock>& Blocks = Reply.Message.Blocks;
	const auto HasKey = [&Key](const ReplyBlock& Each) {
		const OpaqueBlock* const Opaque = std::get_if<OpaqueBlock>(&Each);
		return Opaque && HideInValue(Key, Opaque->Content) != Opaque->Content;
	};
	Blocks.erase(std::remove_if(Blocks.begin(), Blocks.end(), HasKey), Blocks.end());
}

ModelResult ModelClient::AskOnce(const UpstreamRequest& Request, RunningTurn& Turn)
{
	const std::unique_ptr<ReplyAssembler> Assembler = Format.MakeAssembler();
	ReplyBody Body(*Assembler);
	ReplyHead Head;
	std::optional<UpstreamFault> Fault = Http.Run(
		Request, Head,
		[&](const ReplyHead& Begun, std::string_view Bytes) {
			const bool bGoOn = Body.Add(Begun.Status, Bytes);
			Turn.SetPartialText(Config.Server.Key.HideInBeginning(Assembler->GetText()));
			return bGoOn;
		},
		[&Turn] { return Turn.ShouldStop(); });
	// An error that the server has reported says more than how the connection ended.
	if (Assembler->GetFault())
	{
		Fault = Assembler->GetFault();
	}
	else if (!Fault)
	{
		Fault = Body.End(Head);
	}
	std::optional<ModelReply> Reply = Fault && Fault->Kind == FaultKind::Cancelled ? std::nullopt : Assembler->Finish();
	if (Reply && (!Fault || Fault->Kind == FaultKind::Broken) && !Assembler->GetFault())
	{
		HideKey(*Reply);
		return std::move(*Reply);
	}
	if (!Fault)
	{
		Fault = UpstreamFault{ FaultKind::Broken, "The model server's answer ended too early.", {}, {} };
	}
	// Hidden before it is cut, which could leave a part of the key.
	Fault->Message = TidyMessage(Config.Server.Key.HideIn(Fault->Message));
	if (Head.Status == 401 || Head.Status == 403)
	{
		Fault->Message += Config.Server.KeySource.empty() ? " The configuration names no key."
														  : " It comes from " + Config.Server.KeySource + ".";
	}
	return std::move(*Fault);
}

ModelResult ModelClient::Ask(const UpstreamRequest& Request, RunningTurn& Turn)
{
	using Clock = std::chrono::steady_clock;
	std::optional<Clock::time_point> FirstFault;
	for (int Attempt = 1;; ++Attempt)
	{
		Turn.SetAttempt(Attempt);
		ModelResult Result = AskOnce(Request, Turn);
		const UpstreamFault* const Fault = std::get_if<UpstreamFault>(&Result);
		if (!Fault)
		{
			return Result;
		}
		FirstFault = FirstFault.value_or(Clock::now());
		const double Elapsed = std::chrono::duration<double>(Clock::now() - *FirstFault).count();
		const std::optional<double> Delay = FindRetryDelay(*Fault, Attempt, Elapsed, Config, RandomShare());
		if (!Delay)
		{
			return Result;
		}
		if (!Turn.Wait(*Delay))
		{
			return UpstreamFault{ FaultKind::Cancelled, "The request was cancelled.", {}, {} };
		}
	}
}
