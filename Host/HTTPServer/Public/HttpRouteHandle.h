#pragma once

#include "HttpRequestHandler.h"
#include "Templates/SharedPointer.h"

struct FHttpRouteHandleInternal
{
	FString Path;
	EHttpServerRequestVerbs Verbs = EHttpServerRequestVerbs::VERB_NONE;
	FHttpRequestHandler Handler;
};

typedef TSharedPtr<const FHttpRouteHandleInternal> FHttpRouteHandle;
