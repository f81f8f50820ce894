#pragma once

#include "Agent/Chat/ConversationStore.h"
#include "Agent/Chat/TranscriptEntry.h"
#include "CoreMinimal.h"

/** What a client has changed: a conversation of its own, which is listed from its first change on. */
class KESTREL_API FKestrelMcpChanges
{
public:
	/** @param InClientName  fit to be shown */
	explicit FKestrelMcpChanges(const FString& InClientName);
	UE_NONCOPYABLE(FKestrelMcpChanges)

	/** By which a client without a session names them; unguessable. */
	const FString Key;
	/** Of the conversation, and of nothing else: it is no secret. */
	const FString ConversationId;

private:
	friend class FKestrelMcpScope;

	void Record(const FKestrelTranscriptEntry& Entry);

	const FString ClientName;
	FKestrelConversationWriter Writer;
	bool bIsRecorded = false; // the conversation is in the store
};

/**
 * A program that is connected. All that it changes in a session belongs together. Without sessions nothing tells two
 * programs of the same name apart: they share their place in the queue, and each names what its changes belong to.
 */
class KESTREL_API FKestrelMcpClient
{
public:
	/** Without sessions: what has changed before the last so many can only be undone in the panel. */
	static constexpr int32 MaxChanges = 64;

	/** @param InName  as the client calls itself; shown escaped and shortened */
	FKestrelMcpClient(const FString& InName, const FString& InProtocolVersion);
	UE_NONCOPYABLE(FKestrelMcpClient)

	bool IsStateless() const;
	bool TakesStructuredContent() const;
	/** What a session changes; what a client without one changes next, unless it names something else. */
	TSharedRef<FKestrelMcpChanges> GetOrAddChanges();
	/** Of a client without sessions; null for a key that is none of its. */
	TSharedPtr<FKestrelMcpChanges> FindChanges(const FString& Key) const;

	const FString Name; // fit to be shown
	const FString ProtocolVersion;
	/** Unguessable; empty for a client without sessions. */
	FString SessionId;
	double LastSeen = 0.0; // seconds of FPlatformTime

private:
	TArray<TSharedRef<FKestrelMcpChanges>> Changes; // the last one is the newest
};

/**
 * While it lives, tools work for a client: what they change belongs to that conversation, and what they say goes there
 * instead of into the panel's. The panel's own conversation must be at rest.
 */
class FKestrelMcpScope
{
public:
	explicit FKestrelMcpScope(FKestrelMcpChanges& InChanges);
	~FKestrelMcpScope();
	UE_NONCOPYABLE(FKestrelMcpScope)

	/** What was said so far, hints and status lines. */
	const TArray<FString>& GetLines() const { return Lines; }

private:
	FKestrelMcpChanges& Changes;
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
	/** The clients without sessions of that name: the same one as long as they keep asking. */
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
