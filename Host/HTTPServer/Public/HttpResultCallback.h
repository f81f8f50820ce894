#pragma once

#include "HttpServerResponse.h"
#include "Templates/Function.h"

/** Called once, on the game thread, inside the handler or later. */
typedef TFunction<void(TUniquePtr<FHttpServerResponse>&& Response)> FHttpResultCallback;
