#pragma once

#include "CoreMinimal.h"

/** Secrets: the token of the server, the ids of sessions and of calls that wait. */
namespace KestrelMcpSecret
{
/** 64 hexadecimal digits that nobody can guess. */
KESTREL_API FString Make();
/** In a time that does not tell how much of it is right. */
KESTREL_API bool IsSame(const FString& Expected, const FString& Given);
}
