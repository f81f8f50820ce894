#pragma once

#include "Delegates/Delegate.h"
#include "HttpResultCallback.h"
#include "HttpServerRequest.h"

/** True: OnComplete is called, now or later. False: it never is. */
typedef TDelegate<bool(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)> FHttpRequestHandler;
