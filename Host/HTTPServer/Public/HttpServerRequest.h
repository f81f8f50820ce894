#pragma once

#include "Containers/Array.h"
#include "Containers/Map.h"
#include "Containers/UnrealString.h"
#include "HttpPath.h"
#include "HttpServerConstants.h"
#include "Templates/SharedPointer.h"

class FInternetAddr;

/** A request as its handler sees it, for as long as the handler runs. */
struct FHttpServerRequest
{
	FHttpServerRequest() = default;
	UE_NONCOPYABLE(FHttpServerRequest)

	/** What is left of the path behind the route. */
	FHttpPath RelativePath;
	EHttpServerRequestVerbs Verb = EHttpServerRequestVerbs::VERB_NONE;
	/** Names as they were sent, which compare without case. */
	TMap<FString, TArray<FString>> Headers;
	TSharedPtr<FInternetAddr> PeerAddress;
	/** Raw bytes, without a terminator. */
	TArray<uint8> Body;
};
