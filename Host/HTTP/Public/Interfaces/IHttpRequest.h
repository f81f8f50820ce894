#pragma once

#include "Delegates/Delegate.h"
#include "Interfaces/IHttpBase.h"
#include "Interfaces/IHttpResponse.h"

class IHttpRequest;

using FHttpRequestPtr = TSharedPtr<IHttpRequest, ESPMode::ThreadSafe>;
using FHttpRequestRef = TSharedRef<IHttpRequest, ESPMode::ThreadSafe>;

/** bConnectedSuccessfully is true for any status code that arrived; when it is false the response is usually invalid.
 */
using FHttpRequestCompleteDelegate =
	TTSDelegate<void(FHttpRequestPtr, FHttpResponsePtr, bool /*bConnectedSuccessfully*/)>;

namespace EHttpRequestStatus
{
enum Type
{
	NotStarted,
	Processing,
	Failed,
	Succeeded,
};
}

/**
 * One HTTP request. Once it has been started nothing about it can be changed, and the module keeps it alive.
 *
 * A redirect within the same scheme, host and port is followed. Any other completes with the 3xx reply as it is: the
 * request's headers, keys among them, never reach another server.
 */
class IHttpRequest : public IHttpBase, public TSharedFromThis<IHttpRequest, ESPMode::ThreadSafe>
{
public:
	virtual FString GetVerb() const = 0;
	virtual void SetVerb(const FString& InVerb) = 0;
	/** Sent as given: percent-encode what needs it. */
	virtual void SetURL(const FString& URL) = 0;
	/** Replaces a header of that name in its place; names ignore case. */
	virtual void SetHeader(const FString& HeaderName, const FString& HeaderValue) = 0;
	virtual void SetContent(const TArray<uint8>& ContentPayload) = 0;
	virtual void SetContent(TArray<uint8>&& ContentPayload) = 0;
	/** Sent as UTF-8. */
	virtual void SetContentAsString(const FString& ContentString) = 0;
	/** Seconds for the whole request. */
	virtual void SetTimeout(float InTimeoutSecs) = 0;

	/** Called on the game thread. Bind before ProcessRequest: a request that is refused at once completes inside it. */
	virtual FHttpRequestCompleteDelegate& OnProcessRequestComplete() = 0;
	/** False when it could not start; the delegate is called with false all the same. */
	virtual bool ProcessRequest() = 0;
	/** Completes with false. */
	virtual void CancelRequest() = 0;
	virtual EHttpRequestStatus::Type GetStatus() const = 0;
	virtual const FHttpResponsePtr GetResponse() const = 0;
};
