#pragma once

#include "CoreMinimal.h"
#include "Mcp/McpDispatcher.h"
#include "Support/KestrelTest.h"

/** A server without a network, with a conversation store of its own. The agent is left as it was. */
class FKestrelTestMcpServer
{
public:
	FKestrelTestMcpServer();
	~FKestrelTestMcpServer();
	UE_NONCOPYABLE(FKestrelTestMcpServer)

	const FKestrelTestLog Log;
	FKestrelMcpDispatcher Dispatcher;

private:
	const FString UndoBefore;
	const FString RedoBefore;
};

/** A client of it, and what it has been answered. */
class FKestrelTestMcpClient
{
public:
	/** @param Version  2026-07-28 for a client without a session */
	FKestrelTestMcpClient(
		FKestrelTestMcpServer& InServer, const TCHAR* Name, const TCHAR* Version = TEXT("2025-11-25"));

	/** Sends a request, JSON with single quotes. @return its number; what it is answered comes at once or later */
	int32 Request(const FString& Method, const FString& Params = TEXT("{}"));
	int32 Call(const FString& Tool, const FString& Arguments);
	void Cancel(int32 Number);

	/** The result or the fault as JSON text, with single quotes; "nothing" for one that was cancelled, and "waiting".
	 */
	FString GetAnswer(int32 Number) const;
	/** The text of a tool's result; "waiting" for none. */
	FString GetText(int32 Number) const;
	/** The member of a result, of its structured content for instance: "structuredContent.call_id". */
	FString GetMember(int32 Number, const FString& Path) const;

	TSharedPtr<FKestrelMcpClient> Client; // null without a session

private:
	const FKestrelMcpAnswer* FindAnswer(int32 Number) const;

	FKestrelTestMcpServer& Server;
	const FString Meta; // members of each request's parameters, with a comma behind; empty with a session
	TSharedRef<TMap<int32, FKestrelMcpAnswer>> Answers = MakeShared<TMap<int32, FKestrelMcpAnswer>>();
	int32 NumRequests = 0;
};

namespace KestrelTest
{
/** A message of UTF-8 bytes, written with single quotes. */
TArray<uint8> ToBytes(const FString& Json);
}
