#pragma once

#include "CoreMinimal.h"
#include "Mcp/McpCallQueue.h"
#include "Mcp/McpClient.h"
#include "Mcp/McpMessage.h"

/** A message with what its transport knows of it. */
struct FKestrelMcpRequest
{
	TSharedRef<FKestrelMcpMessage> Message;
	/** Of the session; null for a client without one. */
	TSharedPtr<FKestrelMcpClient> Client;
	/** A request that names its version itself, and has no session. */
	bool bIsStateless = false;
};

/**
 * The methods of the protocol, whatever carries the messages.
 *
 * Method names are compared with regard to case; those of the versions with and without sessions are told apart, and
 * what a version does not have is not found.
 */
class KESTREL_API FKestrelMcpDispatcher
{
public:
	FKestrelMcpDispatcher();
	UE_NONCOPYABLE(FKestrelMcpDispatcher)

	/** Whether a message is of the version without sessions. */
	static bool IsStateless(const FKestrelMcpMessage& Message);
	/** Answers a request, once, now or later. */
	void Handle(const FKestrelMcpRequest& Request, const FKestrelMcpReply& Reply);
	/** A notification of a client with a session. */
	void Notify(const FKestrelMcpClient& Client, const FKestrelMcpMessage& Message);
	/** Opens a session. @param OutClient  the new client, when there is one */
	FKestrelMcpAnswer Initialize(const FKestrelMcpMessage& Message, TSharedPtr<FKestrelMcpClient>& OutClient);

	FKestrelMcpClients& GetClients() { return Clients; }
	FKestrelMcpCallQueue& GetCalls() { return Calls; }

private:
	struct FMethod;

	static const TArray<FMethod>& GetMethods();
	FKestrelMcpAnswer Ping(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client);
	FKestrelMcpAnswer Discover(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client);
	FKestrelMcpAnswer ListTools(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client);
	FKestrelMcpAnswer ListResources(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client);
	FKestrelMcpAnswer ListResourceTemplates(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client);
	FKestrelMcpAnswer ReadResource(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client);
	FKestrelMcpAnswer ListPrompts(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client);
	FKestrelMcpAnswer GetPrompt(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client);
	FKestrelMcpAnswer Complete(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client);
	void CallTool(
		const FKestrelMcpMessage& Message, const TSharedRef<FKestrelMcpClient>& Client, const FKestrelMcpReply& Reply);
	/** Asks again for a call: by the tool for it, or by repeating the call with what was answered. */
	void AskAgain(const FString& Handle, const FKestrelMcpMessage& Message, FKestrelMcpClient& Client,
		const FKestrelMcpReply& Reply);
	/** What a stateless request must bring with it. @return false, with the fault, when it does not */
	static bool CheckEnvelope(const FKestrelMcpMessage& Message, FKestrelMcpFault& OutFault);
	/** Adds what each result without a session has. @param KeptSeconds  how long it holds; less than 0 is not told */
	static FKestrelMcpAnswer Seal(const FKestrelMcpAnswer& Answer, int32 KeptSeconds);

	/** The answer to a request that is always answered the same. */
	FKestrelMcpAnswer AnswerConstant(
		const FMethod& Method, const FKestrelMcpMessage& Message, FKestrelMcpClient& Client);

	TMap<FString, TSharedPtr<const FString>> Constants; // results as JSON, by method and kind of client
	FKestrelMcpClients Clients;
	FKestrelMcpCallQueue Calls;
};
