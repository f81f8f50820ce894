#pragma once

#include "CurlHttpRequest.h"
#include "CurlTransport.h"
#include "HttpManager.h"

struct FHttpManager::FState
{
	FState()
		: Multi(curl_multi_init())
	{
	}
	~FState() { curl_multi_cleanup(Multi); }
	UE_NONCOPYABLE(FState)

	void Start(const TSharedRef<FCurlHttpRequest>& Request);
	/** After a transfer: goes on to where it was redirected, or ends the request. */
	void Arrived(const TSharedRef<FCurlHttpRequest>& Request, CURLcode Result);
	/** Takes a request out of the transfer and tells its owner. */
	void End(const TSharedRef<FCurlHttpRequest>& Request, CURLcode Result);

	CURLM* const Multi;
	const FCurlTransport Transport;
	TArray<TSharedRef<FCurlHttpRequest>> InFlight;
	bool bClosed = false; // nothing can be started any more
};
