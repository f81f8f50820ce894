#include "ModelBackend.h"

#include "Log.h"
#include "Metrics.h"
#include "RandomId.h"

#include <algorithm>
#include <cmath>
#include <exception>

namespace
{
Json MakeTurnFailure(const std::string& Error)
{
	return { { "status", "FAILED" }, { "error", Error } };
}
}

ModelBackend::ModelBackend(ModelConfig Config, std::shared_ptr<ModelStore> Store)
	: Context{ std::move(Config), std::move(Store), nullptr, DailyConsumption() }
	, Rates(static_cast<double>(Context.Config.TurnsPerMinute))
	, Leases(*Context.Store)
{
	Context.Keys = std::make_unique<KeyRing>(Context.Store->GetDatabase());
	Context.Today.KeepIn(*Context.Store);
}

ModelBackend::~ModelBackend()
{
	Stop();
	Threads.JoinAll();
	try
	{
		Context.Store->ReleaseAll();
	}
	catch (const std::exception& Error)
	{
		WriteLog("turns_not_released", { { "error", Error.what() } });
	}
}

void ModelBackend::Stop()
{
	{
		const std::lock_guard Lock(Mutex);
		bStopping = true;
	}
	Leases.CancelAll();
}

void ModelBackend::CheckHealth()
{
	Context.Store->GetDatabase().Run("SELECT 1 FROM conversations LIMIT 1");
}

HttpReply ModelBackend::Command(Turn UserTurn)
{
	if (const int Seconds = UserTurn.KeyName.empty() ? 0 : Rates.Take(UserTurn.KeyName))
	{
		GetMetrics().Add(Metric::RateLimited, UserTurn.KeyName);
		HttpReply Reply = HttpReply::FromJson(
			{ { "error", "Too many requests with this key. Try again in " + std::to_string(Seconds) + " s." } }, 429);
		Reply.RetryAfterSeconds = Seconds;
		return Reply;
	}
	const auto Local = std::make_shared<LocalTurn>();
	UserTurn.RequestId = NewRandomId();
	Local->ConversationId = UserTurn.ConversationId;
	Local->RequestId = UserTurn.RequestId;
	Local->KeyName = UserTurn.KeyName;
	std::string Continued;
	try
	{
		Continued = Context.Store->BeginTurn(UserTurn);
	}
	catch (const ForeignConversation& Error)
	{
		return HttpReply::FromJson({ { "error", Error.what() } }, 409);
	}
	Register(Local, Continued);
	// A conversation that begins has nothing to be read from the store.
	const bool bReady = Local->Runner || !UserTurn.FileStructure.is_null();
	Start(Local, bReady ? std::optional(std::move(UserTurn)) : std::nullopt);
	return HttpReply::FromJson({ { "request_id", Local->RequestId } });
}

HttpReply ModelBackend::Status(const std::string& RequestId, const std::string& KeyName)
{
	if (RequestId.find_first_not_of("0123456789abcdef") != std::string::npos)
	{
		return NoSuchRequest();
	}
	const LocalTurnPointer Known = Find(RequestId, KeyName);
	if (Known && !Known->Running->IsLost())
	{
		return Known->Running->Poll();
	}
	const std::optional<StoredTurn> Stored = Context.Store->Poll(RequestId, KeyName);
	if (!Stored)
	{
		return NoSuchRequest();
	}
	if (const std::string Claimed = Stored->bAbandoned ? Context.Store->Claim(RequestId) : ""; !Claimed.empty())
	{
		const auto Local = std::make_shared<LocalTurn>();
		Local->ConversationId = Claimed;
		Local->RequestId = RequestId;
		Local->KeyName = KeyName;
		Register(Local, "");
		Start(Local, std::nullopt);
		return Local->Running->Poll();
	}
	const Json& Progress = Stored->Reply.is_null() ? Stored->Progress : Stored->Reply;
	return HttpReply::FromJson(Progress.is_null() ? RunningTurn(0).GetProgress() : Progress);
}

ModelBackend::LocalTurnPointer ModelBackend::Find(const std::string& RequestId, const std::string& KeyName)
{
	const std::lock_guard Lock(Mutex);
	const auto Found = Turns.find(RequestId);
	return Found != Turns.end() && Found->second->KeyName == KeyName ? Found->second : nullptr;
}

void ModelBackend::Register(const LocalTurnPointer& Local, const std::string& Continued)
{
	Local->Running = std::make_shared<RunningTurn>(Context.Config.Timeouts.Unpolled);
	const std::lock_guard Lock(Mutex);
	Local->Age = ++NumTurns;
	const LocalTurnPointer Before = std::exchange(Latest[Local->ConversationId], Local);
	if (Before)
	{
		Before->Running->Cancel();
		Turns.erase(Before->RequestId);
		// Otherwise another process has gone on with the conversation, or the turn before has left no state.
		Local->Runner = Before->RequestId == Continued ? std::move(Before->Runner) : nullptr;
	}
	Turns[Local->RequestId] = Local;
	if (Turns.size() > MaxReady)
	{
		DropOldest();
	}
}

void ModelBackend::DropOldest()
{
	const auto IsOlder = [](const auto& A, const auto& B) {
		// What is being worked on stays.
		return std::pair(!A.second->Running->IsOver(), A.second->Age) <
			   std::pair(!B.second->Running->IsOver(), B.second->Age);
	};
	const auto Oldest = std::min_element(Turns.begin(), Turns.end(), IsOlder);
	if (Oldest->second->Running->IsOver())
	{
		Latest.erase(Oldest->second->ConversationId);
		Turns.erase(Oldest);
	}
}

void ModelBackend::Start(const LocalTurnPointer& Local, std::optional<Turn> UserTurn)
{
	const std::lock_guard Lock(Mutex);
	if (bStopping)
	{
		return;
	}
	Leases.Add(Local->RequestId, Local->Running);
	Threads.Start([this, Local, UserTurn = std::move(UserTurn)] {
		Work(Local, UserTurn);
		Leases.Remove(Local->RequestId);
	});
}

void ModelBackend::Work(const LocalTurnPointer& Local, const std::optional<Turn>& UserTurn)
{
	RunningTurn& Running = *Local->Running;
	std::unique_ptr<TurnRunner> Runner = std::move(Local->Runner);
	Runner = Runner ? std::move(Runner) : std::make_unique<TurnRunner>(Context);
	try
	{
		const std::optional<Json> Reply = WorkOut(*Local, *Runner, UserTurn);
		// Stored before anybody can see it. A turn that was cancelled by a stop goes on with the next start.
		if (!Reply || Running.IsCancelled() || !Context.Store->FinishTurn(Local->RequestId, Runner->ToJson(), *Reply))
		{
			Running.Lose();
			return;
		}
		NoteEnd(*Local, *Runner, *Reply);
		const std::lock_guard Lock(Mutex);
		Local->Runner = std::move(Runner);
		Running.Finish(*Reply);
	}
	catch (const std::exception& Error)
	{
		WriteLog("turn_broke", { { "conversation", Local->ConversationId }, { "error", Error.what() } });
		Running.Finish(MakeTurnFailure("The service failed in this turn."));
	}
}

void ModelBackend::NoteEnd(const LocalTurn& Local, const TurnRunner& Runner, const Json& Reply)
{
	const bool bFailed = Reply["status"] == "FAILED";
	const double Seconds = Local.Running->GetSeconds();
	GetMetrics().Add(Metric::Turns, bFailed ? "failed" : "completed");
	GetMetrics().Add(Metric::TurnSeconds, "", Seconds);
	WriteLog("turn_ended",
		{ { "conversation", Local.ConversationId }, { "key", Local.KeyName }, { "failed", bFailed },
			{ "seconds", std::round(Seconds * 1000) / 1000 }, { "conversation_tokens", Runner.GetUsed().Tokens },
			{ "conversation_cost", Runner.GetUsed().Cost } },
		{ { "reply", Reply } });
}

std::optional<Json> ModelBackend::WorkOut(LocalTurn& Local, TurnRunner& Runner, const std::optional<Turn>& UserTurn)
{
	if (UserTurn)
	{
		return Runner.Run(*UserTurn, *Local.Running);
	}
	const std::optional<StoredConversation> Stored = Context.Store->Load(Local.RequestId);
	if (!Stored)
	{
		return std::nullopt;
	}
	if (!Stored->State.is_null() && !Runner.FromJson(Stored->State))
	{
		return MakeTurnFailure("What was stored of this conversation cannot be read. Start a new one.");
	}
	for (size_t Index = 0; Index + 1 < Stored->Turns.size(); ++Index)
	{
		Runner.Absorb(Stored->Turns[Index]);
	}
	return Runner.Run(Stored->Turns.back(), *Local.Running);
}
