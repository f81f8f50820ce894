#pragma once

#include "CoreMinimal.h"
#include "Interfaces/IHttpRequest.h"
#include "Interfaces/IHttpResponse.h"

namespace KestrelServiceReply
{
/**
 * Whether a reply is no answer of the server that was asked, but of one that a redirect led to, or the redirect.
 * Engines before 5.5 do not tell where a reply came from in the end.
 */
bool IsOfAnotherServer(const IHttpRequest& Request, const IHttpResponse& Response);
}
