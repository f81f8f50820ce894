#include "Agent/Backend/HTTPAPI.h"

#include "Agent/Agent.h"
#include "Agent/Backend/FirstRequest.h"
#include "Agent/Backend/ServiceReply.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Files/TreeWork.h"
#include "Agent/Text/DisplayText.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "HAL/PlatformTime.h"
#include "HttpModule.h"
#include "Kestrel.h"
#include "KestrelSettings.h"
#include "Misc/App.h"
#include "Misc/EngineVersion.h"
#include "Misc/EngineVersionBase.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"

#define LOCTEXT_NAMESPACE "KestrelHTTPAPI"

namespace HTTPAPI
{
constexpr float FirstPollDelaySeconds = 2.0f;
constexpr float LongestPollDelaySeconds = 10.0f;
constexpr float PollDelayGrowth = 1.5f;
constexpr float PollTickerIntervalSeconds = 0.1f;
constexpr float LongestReplySeconds = 120.0f;
constexpr int32 MaxUnusableReplies = 10;
constexpr int32 MaxRequestIdLength = 1024;

/** Major.Minor of the running engine; empty, with an ensure, when its version text is not of that form. */
FString GetEngineVersion()
{
	TArray<FString> Pieces;
	FEngineVersion::Current().ToString(EVersionComponent::Branch).ParseIntoArray(Pieces, TEXT("."));
	if (!ensureMsgf(Pieces.Num() >= 2,
			TEXT("Error: Unreal Engine version string is invalid. Expected at least Major.Minor format.")))
	{
		return FString();
	}
	return Pieces[0] + TEXT(".") + Pieces[1];
}

/** Whether an id can stand in a URL as it is: visible ASCII characters, without those that end or break one. */
bool CanStandInUrl(const FString& Id)
{
	for (const TCHAR Character : Id)
	{
		if (Character <= TEXT(' ') || Character > TEXT('~') ||
			FString(TEXT("#\"<>\\^`{|}")).Contains(FString::Chr(Character)))
		{
			return false;
		}
	}
	return Id.Len() <= MaxRequestIdLength;
}

void ReportRedirect()
{
	FKestrelInterface::Get().AddHint(
		FText::Format(LOCTEXT("Redirected",
						  "The service at {0} points to another address. Its reply was dropped, as your key is meant "
						  "for no other server."),
			FText::FromString(KestrelDisplayText::EscapeLine(FKestrelModule::GetApiHost()))));
}

/** Why a command has no answer, as far as the HTTP module tells. */
void ReportNoAnswer(const FHttpResponsePtr& Response)
{
	const FText Host = FText::FromString(KestrelDisplayText::EscapeLine(FKestrelModule::GetApiHost()));
	FKestrelInterface::Get().AddHint(
		Response.IsValid()
			? FText::Format(LOCTEXT("EmptyAnswer", "{0} answered with HTTP status {1} and nothing else."), Host,
				  Response->GetResponseCode())
			: FText::Format(
				  LOCTEXT("NoAnswer",
					  "{0} could not be reached. Check that the service runs, that this computer can connect "
					  "to it, and that its certificate is trusted. LogHttp in the editor's log has the reason."),
				  Host));
}
}

FHTTPAPI& FHTTPAPI::Get()
{
	static FHTTPAPI Instance;
	return Instance;
}

FHTTPAPI::~FHTTPAPI()
{
	CancelPolling();
}

const TCHAR* const FHTTPAPI::ApiKeyHeader = TEXT("x-api-key");
const TCHAR* const FHTTPAPI::ConversationIdHeader = TEXT("conversation-id");

FString FHTTPAPI::MakeStatusUrl(const FString& Id)
{
	return FString::Printf(TEXT("https://%s/status?request_id=%s"), *FKestrelModule::GetApiUrl(), *Id);
}

void FHTTPAPI::InitialPromptRequest(const FString& Prompt)
{
	ClearRequestId();
	LastCommand.Reset();
	FirstTree = KestrelFirstRequest::Begin(Prompt);
	FirstTreeRunner.Start(FirstTree.ToSharedRef(), [this]() {
		const TSharedPtr<FKestrelTreeWork> Made = MoveTemp(FirstTree);
		SendCommand(MoveTemp(Made->GetBytes()));
	});
}

void FHTTPAPI::DropFirstRequest()
{
	FirstTreeRunner.Stop();
	FirstTree.Reset();
}

TOptional<int32> FHTTPAPI::GetNumFoldersListed() const
{
	return FirstTree ? TOptional<int32>(FirstTree->GetNumFolders()) : TOptional<int32>();
}

void FHTTPAPI::RegularPromptRequest(const FString& Message)
{
	// The message goes into the templates verbatim: the service takes short fixed texts and the user's own.
	FAgent& Agent = FAgent::Get();
	if (Agent.GetToolResults().IsEmpty())
	{
		RegularRequest(FString::Printf(TEXT("{\"message\": \"%s\"}"), *Message));
		return;
	}
	const FString ToolResults = KestrelJson::ToPrettyText(Agent.GetToolResults());
	Agent.ClearToolResults();
	RegularRequest(FString::Printf(TEXT("{\"tool_results\": %s, \"message\": \"%s\"}"), *ToolResults, *Message));
}

void FHTTPAPI::RegularRequest(const FString& Body)
{
	SendCommand(KestrelJson::ToUtf8(Body));
}

void FHTTPAPI::SendCommand(TArray<uint8>&& Body)
{
	DropFirstRequest();
	ResetPollDelay();
	const FHttpRequestRef Request = FHttpModule::Get().CreateRequest();
	Request->SetVerb(TEXT("POST"));
	Request->SetURL(FString::Printf(TEXT("https://%s/command"), *FKestrelModule::GetApiUrl()));
	Request->SetHeader(TEXT("Content-Type"), TEXT("application/json"));
	Request->SetHeader(ApiKeyHeader, FKestrelModule::GetApiKey());
	Request->SetHeader(ConversationIdHeader, FAgent::Get().GetConversationId());
	Request->SetHeader(TEXT("engine"), FApp::GetBranchName());
	const FString EngineVersion = HTTPAPI::GetEngineVersion();
	if (!EngineVersion.IsEmpty())
	{
		Request->SetHeader(TEXT("engine-version"), EngineVersion);
	}
	Request->SetContent(MoveTemp(Body));
	Request->OnProcessRequestComplete().BindRaw(this, &FHTTPAPI::OnRegularRequestResponse);
	LastCommand = Request;
	Send(Request);
	OnRegularRequest.ExecuteIfBound(TEXT("Sending request..."), FKestrelInterface::MessageColor,
		FKestrelInterface::ItalicFontName, FKestrelInterface::MessageFontSize);
}

void FHTTPAPI::Send(const FHttpRequestRef& Request)
{
	InFlight.RemoveAll([](const TWeakPtr<IHttpRequest, ESPMode::ThreadSafe>& Each) { return !Each.IsValid(); });
	InFlight.Add(Request);
	Request->ProcessRequest();
}

void FHTTPAPI::FailRegularRequest(const TCHAR* Message)
{
	OnRegularRequestFailed.ExecuteIfBound(Message);
}

void FHTTPAPI::OnRegularRequestResponse(FHttpRequestPtr Request, FHttpResponsePtr Response, bool bSucceeded)
{
	if (Request.IsValid() && LastCommand.Pin() != Request)
	{
		return;
	}
	if (bSucceeded && Request.IsValid() && Response.IsValid() &&
		KestrelServiceReply::IsOfAnotherServer(*Request, *Response))
	{
		HTTPAPI::ReportRedirect();
		FailRegularRequest(TEXT("Request Failed"));
		return;
	}
	if (!bSucceeded || !Response.IsValid() || Response->GetContentAsString().IsEmpty())
	{
		HTTPAPI::ReportNoAnswer(bSucceeded ? Response : nullptr);
		FailRegularRequest(TEXT("Request Failed"));
		return;
	}
	const int32 Code = Response->GetResponseCode();
	if (Code == 401 || Code == 403)
	{
		FailRegularRequest(TEXT("Make sure you have a valid API key."));
		return;
	}
	const TSharedPtr<FJsonObject> Reply = KestrelJson::ParseObject(Response->GetContentAsString());
	if (!Reply.IsValid())
	{
		FailRegularRequest(TEXT("Failed to parse initial response"));
		return;
	}
	FString Id;
	if (!Reply->TryGetStringField(TEXT("request_id"), Id) || !HTTPAPI::CanStandInUrl(Id))
	{
		FailRegularRequest(TEXT("Failed to get request ID from response"));
		return;
	}
	SetRequestId(Id);
	Polls.Empty();
	NumUnusableReplies = 0;
	bIsPolling = true;
	LastPollTime = FPlatformTime::Seconds();
	ScheduleNextPoll();
	OnPollStatusRequestStarted.ExecuteIfBound();
}

void FHTTPAPI::ScheduleNextPoll()
{
	if (!bIsPolling)
	{
		return;
	}
	if (PollTickerHandle.IsValid())
	{
		FTSTicker::RemoveTicker(PollTickerHandle);
	}
	PollTickerHandle = FTSTicker::GetCoreTicker().AddTicker(
		FTickerDelegate::CreateRaw(this, &FHTTPAPI::PollTick), HTTPAPI::PollTickerIntervalSeconds);
}

bool FHTTPAPI::PollTick(float DeltaTime)
{
	if (!bIsPolling)
	{
		return false; // ends the ticker
	}
	if (FPlatformTime::Seconds() - LastPollTime < PollDelay)
	{
		return true;
	}
	PollStatusRequest(RequestId);
	LastPollTime = FPlatformTime::Seconds();
	PollDelay = FMath::Min(PollDelay * HTTPAPI::PollDelayGrowth, HTTPAPI::LongestPollDelaySeconds);
	return true;
}

void FHTTPAPI::PollStatusRequest(const FString& Id)
{
	if (!bIsPolling)
	{
		return;
	}
	const FHttpRequestRef Request = FHttpModule::Get().CreateRequest();
	Request->SetVerb(TEXT("GET"));
	Request->SetURL(MakeStatusUrl(Id));
	Request->SetHeader(ApiKeyHeader, FKestrelModule::GetApiKey());
	Request->SetHeader(ConversationIdHeader, FAgent::Get().GetConversationId());
	Request->SetTimeout(HTTPAPI::LongestReplySeconds);
	Request->OnProcessRequestComplete().BindRaw(this, &FHTTPAPI::OnPollStatusRequestResponse);
	Polls.Add({ Request, FPlatformTime::Seconds() });
	Send(Request);
	OnPollStatusRequestProcessing.ExecuteIfBound();
}

TOptional<FHTTPAPI::FPoll> FHTTPAPI::TakePoll(const FHttpRequestPtr& Request)
{
	const int32 Index =
		Polls.IndexOfByPredicate([&Request](const FPoll& Poll) { return Poll.Request.Pin() == Request; });
	if (Index == INDEX_NONE)
	{
		return TOptional<FPoll>();
	}
	const FPoll Poll = Polls[Index];
	Polls.RemoveAt(Index);
	return Poll;
}

void FHTTPAPI::OnPollStatusRequestResponse(FHttpRequestPtr Request, FHttpResponsePtr Response, bool bSucceeded)
{
	// Polls go out on schedule, so two can be under way: the second answer to a turn must not be taken for the next
	// turn's.
	const TOptional<FPoll> Poll = TakePoll(Request);
	if (!bIsPolling || !Poll.IsSet())
	{
		return;
	}
	if (!bSucceeded || !Response.IsValid())
	{
		// A connection that fails is tried again for ever; a server that takes it and does not answer is not.
		if (FPlatformTime::Seconds() - Poll->SentAt >= HTTPAPI::LongestReplySeconds)
		{
			CountUnusableReply();
		}
		return;
	}
	const bool bRedirected = KestrelServiceReply::IsOfAnotherServer(*Request, *Response);
	if (bRedirected && NumUnusableReplies == 0)
	{
		HTTPAPI::ReportRedirect();
	}
	const TSharedPtr<FJsonObject> Reply = KestrelJson::ParseObject(Response->GetContentAsString());
	FString Status;
	if (bRedirected || !Reply.IsValid() || !Reply->TryGetStringField(TEXT("status"), Status))
	{
		CountUnusableReply();
		return;
	}
	NumUnusableReplies = 0;
	OnPollStatusUpdate.ExecuteIfBound(RequestId, Status, Reply);
	InterpretStatus(Reply.ToSharedRef(), Status);
}

void FHTTPAPI::CountUnusableReply()
{
	if (++NumUnusableReplies >= HTTPAPI::MaxUnusableReplies)
	{
		CancelPolling();
		OnPollStatusRequestCompleted.ExecuteIfBound(nullptr);
	}
}

void FHTTPAPI::InterpretStatus(const TSharedRef<FJsonObject>& Reply, const FString& Status)
{
	if (Status.Equals(TEXT("COMPLETED"), ESearchCase::IgnoreCase))
	{
		CancelPolling();
		const TSharedPtr<FJsonObject>* Answer = nullptr;
		if (Reply->TryGetObjectField(TEXT("response"), Answer))
		{
			OnPollStatusRequestCompleted.ExecuteIfBound(*Answer);
		}
	}
	else if (Status.Equals(TEXT("FAILED"), ESearchCase::IgnoreCase))
	{
		CancelPolling();
		FString Error;
		Reply->TryGetStringField(TEXT("error"), Error);
		OnPollStatusRequestFailed.ExecuteIfBound(Error);
	}
}

void FHTTPAPI::CancelPolling()
{
	DropFirstRequest();
	bIsPolling = false;
	Polls.Empty();
	NumUnusableReplies = 0;
	if (PollTickerHandle.IsValid())
	{
		FTSTicker::RemoveTicker(PollTickerHandle);
		PollTickerHandle.Reset();
	}
	ResetPollDelay();
}

TOptional<double> FHTTPAPI::GetSecondsToNextPoll() const
{
	return bIsPolling ? FMath::Max(LastPollTime + PollDelay - FPlatformTime::Seconds(), 0.0) : TOptional<double>();
}

void FHTTPAPI::ResetPollDelay()
{
	PollDelay = HTTPAPI::FirstPollDelaySeconds;
	LastPollTime = 0.0;
}

void FHTTPAPI::AbandonRequests()
{
	CancelPolling();
	for (const TWeakPtr<IHttpRequest, ESPMode::ThreadSafe>& Weak : InFlight)
	{
		if (const FHttpRequestPtr Request = Weak.Pin())
		{
			Request->OnProcessRequestComplete().Unbind();
			Request->CancelRequest();
		}
	}
	InFlight.Empty();
}

#undef LOCTEXT_NAMESPACE
