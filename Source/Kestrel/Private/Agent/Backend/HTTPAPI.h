#pragma once

#include "Agent/Work/WorkRunner.h"
#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "Interfaces/IHttpRequest.h"
#include "Interfaces/IHttpResponse.h"

class FJsonObject;
class FKestrelTreeWork;

DECLARE_DELEGATE_FourParams(FOnRegularRequestDelegate, const FString& /*Text*/, const FLinearColor& /*Color*/,
	const FName& /*FontStyle*/, float /*FontSize*/);
DECLARE_DELEGATE_OneParam(FOnRequestFailedDelegate, const FString& /*Message*/);
DECLARE_DELEGATE(FOnPollDelegate);
DECLARE_DELEGATE_OneParam(FOnConnectionTestedDelegate, const FText& /*Finding*/);
DECLARE_DELEGATE_OneParam(FOnPollCompletedDelegate, const TSharedPtr<FJsonObject> /*Response*/);
DECLARE_DELEGATE_ThreeParams(FOnPollStatusUpdateDelegate, const FString& /*RequestId*/, const FString& /*Status*/,
	const TSharedPtr<FJsonObject> /*StatusObject*/);

/**
 * The client of the AI service.
 *
 * A command request brings the user's turn and gets a request id at once; the answer is fetched by polling the status
 * of that id on the core ticker, after 2, 3, 4.5, 6.75 and then 10 seconds, until it is there or CancelPolling is
 * called. It tells what happens through its delegates and never touches the conversation itself. Game thread only.
 *
 * Replies are known by their request: one to an earlier command, or to a poll of an earlier turn, is dropped. So is one
 * that came from another server than was asked, since a redirect takes the key along.
 */
class KESTREL_API FHTTPAPI
{
public:
	static FHTTPAPI& Get();
	~FHTTPAPI();
	UE_NONCOPYABLE(FHTTPAPI)

	/** A status line for the panel. */
	FOnRegularRequestDelegate OnRegularRequest;
	/** The command request failed; the message is for the user. */
	FOnRequestFailedDelegate OnRegularRequestFailed;
	/** The service has taken the command, and polling has begun. */
	FOnPollDelegate OnPollStatusRequestStarted;
	/** The turn is finished. */
	FOnPollCompletedDelegate OnPollStatusRequestCompleted;
	/** The service reports the turn as failed, with its own text, which may be empty. */
	FOnRequestFailedDelegate OnPollStatusRequestFailed;
	/** A status poll was just sent. */
	FOnPollDelegate OnPollStatusRequestProcessing;
	FOnRequestFailedDelegate OnPollStatusRequestError;
	/** A status reply arrived; fired before it is interpreted. */
	FOnPollStatusUpdateDelegate OnPollStatusUpdate;

	/**
	 * First turn of a conversation: the prompt with the project's file tree. It is sent as soon as the tree is there;
	 * CancelPolling drops it until then.
	 */
	void InitialPromptRequest(const FString& Prompt);
	/** Folders listed for that request; unset when none is being made. */
	TOptional<int32> GetNumFoldersListed() const;
	/** Every later turn; the waiting tool results go with it and are forgotten. */
	void RegularPromptRequest(const FString& Message);
	/** Sends a body verbatim to the command endpoint. */
	void RegularRequest(const FString& Body);
	void OnRegularRequestResponse(FHttpRequestPtr Request, FHttpResponsePtr Response, bool bSucceeded);

	void ScheduleNextPoll();
	bool PollTick(float DeltaTime);
	void PollStatusRequest(const FString& Id);
	void OnPollStatusRequestResponse(FHttpRequestPtr Request, FHttpResponsePtr Response, bool bSucceeded);
	/** Stops polling. Requests in flight go on; their replies are dropped. */
	void CancelPolling();

	void SetRequestId(const FString& Id) { RequestId = Id; }
	void ClearRequestId() { RequestId.Empty(); }
	const FString& GetRequestId() const { return RequestId; }
	void ResetPollDelay();
	bool IsPolling() const { return bIsPolling; }
	/** Until the service is asked again, at least 0; unset while nothing is polled. */
	TOptional<double> GetSecondsToNextPoll() const;

	/**
	 * Asks the service for the status of a turn that there is not: the answer tells whether the service is there and
	 * takes the key. Nothing of the conversation is touched, and nothing of the project is sent.
	 */
	void TestConnection(const FOnConnectionTestedDelegate& OnTested);

	/** Makes requests in flight forget this object. For the module's shut-down: the HTTP module lives on. */
	void AbandonRequests();

private:
	FHTTPAPI() = default;

	static const TCHAR* const ApiKeyHeader;
	static const TCHAR* const ConversationIdHeader;
	static FString MakeStatusUrl(const FString& Id);

	/** A status request of the current turn that has not been answered yet. */
	struct FPoll
	{
		TWeakPtr<IHttpRequest, ESPMode::ThreadSafe> Request;
		double SentAt = 0.0; // seconds of FPlatformTime
	};

	/** One that is still being made is not sent. */
	void DropFirstRequest();
	/** @param Body  UTF-8 */
	void SendCommand(TArray<uint8>&& Body);
	void Send(const FHttpRequestRef& Request);
	void FailRegularRequest(const TCHAR* Message);
	/** Takes the poll that a reply belongs to; unset for a reply to another turn. */
	TOptional<FPoll> TakePoll(const FHttpRequestPtr& Request);
	/** A status reply that says nothing; after some in a row the turn is given up. */
	void CountUnusableReply();
	void InterpretStatus(const TSharedRef<FJsonObject>& Reply, const FString& Status);

	TSharedPtr<FKestrelTreeWork> FirstTree; // while it is made
	FKestrelWorkRunner FirstTreeRunner;
	FString RequestId; // of the turn that is being polled
	bool bIsPolling = false;
	FTSTicker::FDelegateHandle PollTickerHandle;
	float PollDelay = 2.0f;    // seconds between two polls at least; grows
	double LastPollTime = 0.0; // seconds of FPlatformTime; of the last poll, or of the request id's receipt
	TArray<TWeakPtr<IHttpRequest, ESPMode::ThreadSafe>> InFlight;
	TWeakPtr<IHttpRequest, ESPMode::ThreadSafe> LastCommand;
	TArray<FPoll> Polls;
	int32 NumUnusableReplies = 0; // in a row
};
