#pragma once

#include "CoreMinimal.h"
#include "HttpServerConstants.h"

struct FHttpServerRequest;

/**
 * Who may talk to the server: programs of this machine that know the token. A page in a browser of this machine is not
 * one of them, and neither is a page that makes the browser take its own host name for this machine's (DNS rebinding).
 */
namespace KestrelMcpAccess
{
/** The one value of a header; unset when there is none, and empty when there are several. */
TOptional<FString> GetHeader(const FHttpServerRequest& Request, const TCHAR* Name);
/** Whether an address as "127.0.0.1" or "::1" is this machine's own. */
KESTREL_API bool IsLoopback(const FString& Address);
/** Of the header Host, or of an origin without its scheme: this machine with that port. */
KESTREL_API bool IsOwnAuthority(const FString& Authority, uint32 Port);
/** @return Ok, or the status to refuse the request with */
EHttpServerResponseCodes Check(const FHttpServerRequest& Request, uint32 Port, const FString& Token);
/** Whether the request comes from this machine, whatever else it is. */
bool IsFromThisMachine(const FHttpServerRequest& Request);
/** Where the engine's server would listen instead of on this machine alone; empty when it is this machine. */
FString FindForeignBindAddress(uint32 Port);
}
