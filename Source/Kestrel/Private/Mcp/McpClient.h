#pragma once

#include "Agent/Chat/ConversationStore.h"
#include "Agent/Chat/TranscriptEntry.h"
#include "CoreMinimal.h"

/**
 * A program that is connected, and what it has changed: a conversation of its own, which starts with its first change.
 */
class KESTREL_API FKestrelMcpClient
{
public:
	/** @param InName  as the client calls itself; shown escaped and shortened */
	FKestrelMcpClient(const FString& InName, const FString& InProtocolVersion);
	UE_NONCOPYABLE(FKestrelMcpClient)

	/** Of the conversation, and of nothing else: it is no secret. */
	const FString& GetConversationId() const { return ConversationId; }
	bool IsStateless() const;
	bool TakesStructuredContent() const;

	const FString Name; // fit to be shown
	const FString ProtocolVersion;
	/** Unguessable; empty for a client without sessions. */
	FString SessionId;
	double LastSeen = 0.0; // seconds of FPlatformTime

private:
	friend class FKestrelMcpScope;

	void Record(const FKestrelTranscriptEntry& Entry);

	const FString ConversationId;
	FKestrelConversationWriter Writer;
	bool bIsRecorded = false; // the conversation is in the store
};

/**
 * While it lives, tools work for a client: what they change belongs to its conversation, and what they say goes there
 * instead of into the panel's. The panel's own conversation must be at rest.
 */
class FKestrelMcpScope
{
public:
	explicit FKestrelMcpScope(FKestrelMcpClient& InClient);
	~FKestrelMcpScope();
	UE_NONCOPYABLE(FKestrelMcpScope)

	/** What was said so far, hints and status lines. */
	const TArray<FString>& GetLines() const { return Lines; }

private:
	FKestrelMcpClient& Client;
	const FString ConversationBefore;
	TArray<FString> Lines;
};

/** The clients that are connected. */
class KESTREL_API FKestrelMcpClients
{
public:
	static constexpr int32 MaxClients = 32;
	static constexpr double IdleSeconds = 30.0 * 60.0;

	/** A new session. The client that has been idle for longest goes when there are too many. */
	TSharedRef<FKestrelMcpClient> Open(const FString& Name, const FString& ProtocolVersion);
	/** Null for a session that is unknown or has ended. */
	TSharedPtr<FKestrelMcpClient> Find(const FString& SessionId);
	/** The client without sessions of that name: the same one as long as it keeps asking. */
	TSharedRef<FKestrelMcpClient> FindOrAddStateless(const FString& Name);
	void End(const TSharedRef<FKestrelMcpClient>& Client);
	void EndAll();
	/** Ends those that have been idle for too long. */
	void EndIdle();
	const TArray<TSharedRef<FKestrelMcpClient>>& GetAll() const { return Clients; }

	/** Nobody waits for the client's calls any more. */
	TDelegate<void(const FKestrelMcpClient&)> OnEnded;
	/** One has come or gone. */
	FSimpleMulticastDelegate OnChanged;

private:
	void MakeRoom();

	TArray<TSharedRef<FKestrelMcpClient>> Clients;
};
