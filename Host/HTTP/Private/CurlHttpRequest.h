#pragma once

#include "Interfaces/IHttpRequest.h"

#include <curl/curl.h>
#include <string>

struct FCurlTransport;

/** A name and a value as they stand in a message. */
struct FHttpHeader
{
	FString Name;
	FString Value;
};

/** What becomes of a transfer that has ended. */
enum class ERedirect
{
	None,    // it is the reply
	Follow,  // it goes on at another address of the same server
	TooMany, // it would go in circles
};

class FCurlHttpResponse final : public IHttpResponse
{
public:
	FString GetURL() const override { return URL; }
	FString GetHeader(const FString& HeaderName) const override;
	TArray<FString> GetAllHeaders() const override;
	FString GetContentType() const override { return GetHeader(TEXT("Content-Type")); }
	uint64 GetContentLength() const override { return static_cast<uint64>(Content.Num()); }
	const TArray<uint8>& GetContent() const override { return Content; }
	int32 GetResponseCode() const override { return ResponseCode; }
	FString GetContentAsString() const override;

	FString URL;
	int32 ResponseCode = 0;
	TArray<FHttpHeader> Headers;
	TArray<uint8> Content;
};

/** A request on top of a libcurl easy handle, which lives from start to end of the transfer. */
class FCurlHttpRequest final : public IHttpRequest
{
public:
	~FCurlHttpRequest() override;

	FString GetURL() const override { return URL; }
	FString GetHeader(const FString& HeaderName) const override;
	TArray<FString> GetAllHeaders() const override;
	FString GetContentType() const override { return GetHeader(TEXT("Content-Type")); }
	uint64 GetContentLength() const override { return static_cast<uint64>(Content.Num()); }
	const TArray<uint8>& GetContent() const override { return Content; }

	FString GetVerb() const override { return Verb; }
	void SetVerb(const FString& InVerb) override;
	void SetURL(const FString& InURL) override;
	void SetHeader(const FString& HeaderName, const FString& HeaderValue) override;
	void SetContent(const TArray<uint8>& ContentPayload) override;
	void SetContent(TArray<uint8>&& ContentPayload) override;
	void SetContentAsString(const FString& ContentString) override;
	void SetTimeout(float InTimeoutSecs) override;
	FHttpRequestCompleteDelegate& OnProcessRequestComplete() override { return CompleteDelegate; }
	bool ProcessRequest() override;
	void CancelRequest() override;
	EHttpRequestStatus::Type GetStatus() const override { return Status; }
	const FHttpResponsePtr GetResponse() const override;

	CURL* GetHandle() const { return Handle; }
	bool IsCancelled() const { return bCancelled; }
	/**
	 * Called by the manager when a transfer has arrived. Only a redirect within the scheme, host and port is followed;
	 * the handle is then ready to be started again. Any other is the reply itself, so the other server is never
	 * contacted.
	 */
	ERedirect FollowRedirect();
	/** Called by the manager when the last transfer has ended. */
	void Finish(CURLcode Result);

private:
	bool CanChange(const TCHAR* What) const;
	bool Refuse(const TCHAR* Reason);
	void SetUpHandle();
	void SetUpMethod();
	void SetUpTls(const FCurlTransport& Transport);
	void SetUpHeaders();
	void ReleaseHandle();
	static size_t ReceiveBody(char* Data, size_t Size, size_t Count, void* Request);
	static size_t ReceiveHeader(char* Data, size_t Size, size_t Count, void* Request);

	FString Verb = TEXT("GET");
	FString URL;
	TArray<FHttpHeader> Headers;
	TArray<uint8> Content;
	float TimeoutSeconds = 0.0f; // 0 takes the module's
	float TotalSeconds = 0.0f;   // of the request that is in flight; 0 is no limit
	int32 NumRedirects = 0;
	FHttpRequestCompleteDelegate CompleteDelegate;
	EHttpRequestStatus::Type Status = EHttpRequestStatus::NotStarted;
	bool bCancelled = false;
	double StartTime = 0.0; // seconds of the wall
	double EndTime = 0.0;

	CURL* Handle = nullptr;
	curl_slist* HeaderList = nullptr;
	curl_slist* ConnectTo = nullptr;
	int64 MaxResponseBytes = 0; // a larger body ends the request
	TSharedPtr<FCurlHttpResponse> Response;
};
