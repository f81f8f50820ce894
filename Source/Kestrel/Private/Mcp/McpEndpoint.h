#pragma once

#include "CoreMinimal.h"
#include "HttpResultCallback.h"
#include "HttpRouteHandle.h"
#include "Mcp/McpMessage.h"

class FKestrelMcpClient;
class FKestrelMcpDispatcher;
class IHttpRouter;
struct FHttpServerRequest;

/**
 * The path of the server to which clients send their messages, one in each POST, and which answers each with one JSON
 * object. An old version of the protocol may put several into one. There is nothing to listen to: GET is refused.
 */
class KESTREL_API FKestrelMcpEndpoint : public TSharedFromThis<FKestrelMcpEndpoint>
{
public:
	static const TCHAR* const Path; // "/mcp"

	/** @param InToken  what each request must bring */
	FKestrelMcpEndpoint(FKestrelMcpDispatcher& InDispatcher, uint32 InPort, const FString& InToken);
	~FKestrelMcpEndpoint();
	UE_NONCOPYABLE(FKestrelMcpEndpoint)

	/** @return false when the port is taken */
	bool Bind();
	/** Nothing is answered any more; the port itself stays in use by the engine. */
	void Unbind();
	/** Below the path: what a probe of our own asks for, to see that it is this endpoint that answers. */
	const FString& GetNonce() const { return Nonce; }
	bool WasProbed() const { return bWasProbed; }

	const uint32 Port;
	const FString Token;

private:
	bool Handle(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete);
	void HandleAllowed(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete);
	void HandlePost(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete);
	void HandleBatch(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete);
	void HandleDelete(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete);
	/** A message of the version without sessions. */
	void HandleStateless(const FHttpServerRequest& Request, const TSharedRef<FKestrelMcpMessage>& Message,
		const FHttpResultCallback& OnComplete);
	void HandleInSession(const FHttpServerRequest& Request, const TSharedRef<FKestrelMcpMessage>& Message,
		const FHttpResultCallback& OnComplete);
	void Initialize(const TSharedRef<FKestrelMcpMessage>& Message, const FHttpResultCallback& OnComplete);
	/** @return null, with the answer sent, when there is no such session */
	TSharedPtr<FKestrelMcpClient> FindSession(
		const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete) const;

	FKestrelMcpDispatcher& Dispatcher;
	const FString Nonce;
	bool bWasProbed = false;
	TSharedPtr<IHttpRouter> Router;
	FHttpRouteHandle Route;
};
