#pragma once

#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "Mcp/McpDispatcher.h"
#include "Mcp/McpEndpoint.h"
#include "Mcp/McpServerFile.h"

enum class EKestrelMcpServerState : uint8
{
	Off,
	/** Until it has been seen that it is this server that answers on the port. */
	Starting,
	Listening,
	Failed,
};

/**
 * The server for other assistants: off unless the user's settings, or -KestrelMcp on the command line, turn it on. Game
 * thread.
 */
class KESTREL_API FKestrelMcpServer
{
public:
	static FKestrelMcpServer& Get();
	~FKestrelMcpServer();
	UE_NONCOPYABLE(FKestrelMcpServer)

	/** Starts it with the first frame, if it is wanted. */
	void Initialize();
	void Shutdown();
	/** Starts or stops it, as the settings say. */
	void ApplySettings();

	void Start();
	/** Whoever waits is told; nothing that waits for approval runs. */
	void Stop();
	/** By the user, who does not want it to start again either. */
	void TurnOff();

	EKestrelMcpServerState GetState() const { return State; }
	const FString& GetUrl() const { return Url; }
	/** Of a server that failed. */
	const FText& GetFailure() const { return Failure; }
	/** What happened last to a call that a person was asked about, and that nobody waits for any more. */
	const FText& GetNotice() const { return Notice; }
	FKestrelMcpDispatcher& GetDispatcher() { return Dispatcher; }
	FKestrelMcpCallQueue& GetCalls() { return Dispatcher.GetCalls(); }

	/** The state, the clients or what waits for approval. */
	FSimpleMulticastDelegate OnChanged;

private:
	FKestrelMcpServer();

	bool IsWanted() const;
	/** The user's setting begins with what the project's configuration says. */
	bool IsTurnedOnByProject() const;
	void Fail(const FText& Reason);
	/** Asks the own address, to see who answers. */
	void Probe();
	void OnProbed();
	void NoteWithdrawn(const FKestrelMcpCall& Call);

	FKestrelMcpDispatcher Dispatcher;
	TSharedPtr<FKestrelMcpEndpoint> Endpoint; // null while it is off
	EKestrelMcpServerState State = EKestrelMcpServerState::Off;
	FKestrelMcpServerFile File; // of the server that starts or listens
	FString Url;
	FText Failure;
	FText Notice;
	FTSTicker::FDelegateHandle StartTicker;
	FTSTicker::FDelegateHandle IdleTicker;
};
