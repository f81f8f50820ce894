#pragma once

#include "Agent/Work/WorkRunner.h"
#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "Delegates/IDelegateInstance.h"
#include "Mcp/McpMessage.h"

class FJsonObject;
class FJsonValue;
class FKestrelMcpChanges;
class FKestrelMcpClient;
struct FKestrelTool;
struct FKestrelToolPlan;

enum class EKestrelMcpCallState : uint8
{
	/** Behind other calls, or for the panel's own conversation to come to rest. */
	Queued,
	/** For a person. */
	AwaitingApproval,
	/** A compile goes on, or a reading that takes several frames. */
	Running,
	Done,
};

/** A call of a tool, from its arrival until its result is fetched. */
struct FKestrelMcpCall
{
	FKestrelMcpCall(const TSharedRef<FKestrelMcpClient>& InClient, const TSharedPtr<FJsonValue>& InRequestId,
		const FKestrelTool& InTool, const TSharedRef<FJsonObject>& InArguments);

	/** By which its client asks for the result; unguessable. */
	const FString Handle;
	const TSharedRef<FKestrelMcpClient> Client;
	TSharedPtr<FJsonValue> RequestId; // of the request that waits, or the last one
	const FKestrelTool* const Tool;
	const TSharedRef<FJsonObject> Arguments;
	/** What it changes belongs to it; null, without sessions, until something is changed. */
	TSharedPtr<FKestrelMcpChanges> Changes;
	EKestrelMcpCallState State = EKestrelMcpCallState::Queued;
	TSharedPtr<FKestrelToolPlan> Plan; // once it awaits approval
	FString Result;                    // once it is done
	FKestrelMcpReply Reply;            // set while a request of the client waits
	double AskedAt = 0.0;              // since when it waits; of a call that nobody asks for, when it was last answered
	FKestrelWorkRunner Runner;         // while it reads
};

/**
 * The calls of all clients: they run on the game thread, one at a time and in the order in which they came. Only a call
 * that waits for a person lets those of other clients pass.
 *
 *   sees                                          does
 *   the panel's own conversation at work          lets all calls wait
 *   a call that needs nobody's approval           runs it
 *   one that does                                 shows it in the panel; Approve runs it, Reject fails it
 *   a request that has waited for 40 seconds      answers it with a handle, to be asked again
 *   a handle that nobody asks for, for 45 seconds withdraws the call; what is done is kept for ten minutes
 *   a request that is cancelled, a client gone    withdraws the call, unless it is changing something
 */
class KESTREL_API FKestrelMcpCallQueue
{
public:
	/** Clients give up after a minute, and proxies before them. */
	static constexpr double LongestWaitSeconds = 40.0;
	/** A client that is told to ask again does so at once, or when its user has let it. */
	static constexpr double WithdrawSeconds = 45.0;
	static constexpr double ResultKeptSeconds = 600.0;
	static constexpr int32 MaxCalls = 64;
	static constexpr int32 MaxCallsOfClient = 16;

	FKestrelMcpCallQueue();
	~FKestrelMcpCallQueue();
	UE_NONCOPYABLE(FKestrelMcpCallQueue)

	/** A new call; it may run at once. @param Changes  may be null for what changes nothing, or something new */
	void Add(const TSharedRef<FKestrelMcpClient>& Client, const TSharedPtr<FJsonValue>& RequestId,
		const FKestrelTool& Tool, const TSharedRef<FJsonObject>& Arguments,
		const TSharedPtr<FKestrelMcpChanges>& Changes, const FKestrelMcpReply& Reply);
	/** A client asks again. @return false when there is no such call */
	bool AskAgain(const FString& Handle, const TSharedPtr<FJsonValue>& RequestId, const FKestrelMcpReply& Reply);
	/** The call that a handle stands for; null when there is none. */
	const FKestrelMcpCall* Find(const FString& Handle) const;

	/** A client no longer waits for a request; ignored when it is unknown, done or changes something already. */
	void Cancel(const FKestrelMcpClient& Client, const TSharedPtr<FJsonValue>& RequestId);
	void WithdrawAllOf(const FKestrelMcpClient& Client);
	/** The server stops: whoever waits is told so. */
	void WithdrawAll(const FKestrelMcpAnswer& Answer);

	/** The calls that wait for a person, in order. */
	TArray<TSharedRef<FKestrelMcpCall>> GetAwaitingApproval() const;
	/** Runs the call if everything is still as it was shown, and otherwise shows it again. */
	void Approve(const FString& Handle);
	void Reject(const FString& Handle);
	/** Whether the panel's own conversation lets no call run, or be approved. */
	static bool IsPanelAtWork();

	/** Once a frame while there are calls. @param Now  seconds of FPlatformTime */
	void Tick(double Now);
	int32 Num() const { return Calls.Num(); }

	/** What waits for a person has changed. */
	FSimpleMulticastDelegate OnChanged;
	/** A call that a person was asked about has been withdrawn. */
	TDelegate<void(const FKestrelMcpCall&)> OnWithdrawn;

private:
	using FCallRef = TSharedRef<FKestrelMcpCall>;

	FCallRef* FindCall(const FString& Handle);
	/** Runs what may run, for some milliseconds. */
	void Advance();
	/** The next call that is neither behind another one of its client nor waiting for a person; null for none. */
	TSharedPtr<FKestrelMcpCall> FindNext() const;
	/** Runs a call, refuses it, or lets it wait for a person. */
	void Decide(const FCallRef& Call);
	/** A line in the panel for a change that a rule allows. */
	void NoteThatNobodyWasAsked(const FKestrelMcpCall& Call) const;
	TSharedRef<FKestrelToolPlan> MakePlan(const FKestrelMcpCall& Call) const;
	/** Whether a call that was shown would still do what was shown. */
	bool StillHolds(const FKestrelMcpCall& Call) const;
	void Run(const FCallRef& Call);
	void RunReading(const FCallRef& Call);
	void Finish(const FCallRef& Call, const FString& Result);
	/** @param Answer  to whoever still waits */
	void Withdraw(const FCallRef& Call, const FKestrelMcpAnswer& Answer = FKestrelMcpAnswer());
	void AnswerWithHandle(FKestrelMcpCall& Call, double Now);
	void OnCompileFinished(
		const TArray<TSharedPtr<FJsonObject>>& Messages, const FString& ToolId, const FString& Logs, bool bSuccess);
	void StartTicker();

	TArray<FCallRef> Calls;
	FTSTicker::FDelegateHandle TickerHandle;
	FDelegateHandle CompileFinishedHandle;
	bool bIsAdvancing = false;
};
