#pragma once

#include "Agent/KestrelAgentState.h"
#include "CoreMinimal.h"
#include "Delegates/IDelegateInstance.h"

class FJsonObject;
struct FKestrelToolPlan;

/** What the service says about the turn that it is working on. Any of it may be missing. */
struct FKestrelServiceProgress
{
	/** The answer so far, without the key; the last MaxPartialLength characters of it. */
	FString Partial;
	TOptional<int64> Tokens;
	/** From 1; more when the service had to ask its model again. */
	TOptional<int64> Attempt;
};

/**
 * The conversation of now in numbers, for whoever shows how it is going: how long the agent has been working since the
 * user's last word, how many turns it took, what its tools came to, and what the service reports meanwhile.
 *
 * It listens to the agent and to the backend client from Start to Stop, whether a panel is open or not. Nothing of it
 * is logged, stored or sent. Game thread only.
 */
class KESTREL_API FKestrelRunStatus
{
public:
	static constexpr int32 MaxPartialLength = 64 * 1024;
	/** So many equal failures in a row are a loop that somebody should look at. */
	static constexpr int32 NumFailuresOfLoop = 3;

	static FKestrelRunStatus& Get();
	UE_NONCOPYABLE(FKestrelRunStatus)

	void Start();
	void Stop();

	/** The states in which the agent waits for the user. In all others it is working. */
	static bool IsWaitingForUser(EAgentState State);
	/** Whether the agent works, on its way to an answer or on the user's behalf. */
	static bool IsWorking();

	/** Seconds of work since the user's last word; they stand still while the agent waits for the user. */
	double GetSecondsOfWork() const;
	/** Turns that the service has taken on in this conversation. */
	int32 GetNumTurns() const { return NumTurns; }
	/** Tools that have run, those that failed among them. */
	int32 GetNumActions() const { return NumActions; }
	int32 GetNumFailures() const { return NumFailures; }
	/** Seconds until the service is asked again; unset while nothing is polled. */
	TOptional<double> GetSecondsToNextPoll() const;
	const FKestrelServiceProgress& GetProgress() const { return Progress; }

	/** Whether the last failures were NumFailuresOfLoop times the same. Reading something in between changes nothing.
	 */
	bool IsInLoop() const { return NumSameFailures >= NumFailuresOfLoop; }
	int32 GetNumSameFailures() const { return NumSameFailures; }
	/** What fails, and how: on a line each, with escapes for what cannot be seen. */
	FText DescribeLastFailure() const;

	/** Something of it has changed but for the seconds. */
	FSimpleMulticastDelegate& OnChanged() { return Changed; }

private:
	FKestrelRunStatus() = default;

	void OnStateChanged();
	void OnToolDone(const FKestrelToolPlan& Plan, const FString& Result);
	void OnCompileFinished(
		const TArray<TSharedPtr<FJsonObject>>& Messages, const FString& ToolId, const FString& Logs, bool bSuccess);
	void OnPollStatusUpdate(
		const FString& RequestId, const FString& ServiceStatus, const TSharedPtr<FJsonObject> StatusObject);
	void NoteFailure(const FText& What, const FString& Target, const FString& Result);
	void ForgetFailures();

	EAgentState State = EAgentState::None;
	bool bIsStarted = false;
	double WorkBegan = 0.0;     // seconds of FPlatformTime; of the last work that began
	double SecondsOfWork = 0.0; // of the last work that has ended
	int32 NumTurns = 0;
	int32 NumActions = 0;
	int32 NumFailures = 0;
	FKestrelServiceProgress Progress;

	FText LastAction; // that failed
	FString LastTarget;
	FString LastResult;
	int32 NumSameFailures = 0;

	FSimpleMulticastDelegate Changed;
	FDelegateHandle StateChangedHandle;
	FDelegateHandle ToolDoneHandle;
	FDelegateHandle CompileFinishedHandle;
};
