#pragma once

#include "CoreMinimal.h"
#include "HttpResultCallback.h"
#include "Mcp/McpMessage.h"

class FKestrelMcpClient;
class FKestrelMcpDispatcher;

/** Several messages of one client that came as one: sends one array of their answers, once it has them all. */
class FKestrelMcpBatch : public TSharedFromThis<FKestrelMcpBatch>
{
public:
	explicit FKestrelMcpBatch(const FHttpResultCallback& InOnComplete)
		: OnComplete(InOnComplete)
	{
	}

	/** Once. @param Faults  why a message is null, by its index */
	void Handle(FKestrelMcpDispatcher& Dispatcher, const TSharedRef<FKestrelMcpClient>& Client,
		const TArray<TSharedPtr<FKestrelMcpMessage>>& Messages, const TArray<FKestrelMcpFault>& Faults);

private:
	void HandleRequest(FKestrelMcpDispatcher& Dispatcher, const TSharedRef<FKestrelMcpClient>& Client,
		const TSharedRef<FKestrelMcpMessage>& Message);
	/** @param Id  null when the message could not be read */
	void Add(const TSharedPtr<FJsonValue>& Id, const FKestrelMcpAnswer& Answer);
	void Close();

	const FHttpResultCallback OnComplete;
	TArray<FString> Answers; // as JSON texts
	int32 NumAwaited = 1;    // requests without an answer; and the batch itself, while it is handled
};
