#pragma once

#include "CoreMinimal.h"

class FKestrelTreeWork;

namespace KestrelFirstRequest
{
/**
 * Begins to make the body of a conversation's first request: the prompt, the project's tree by the user's settings, and
 * whether tools wait for approval. GetBytes has it at the end, in UTF-8.
 */
KESTREL_API TSharedRef<FKestrelTreeWork> Begin(const FString& Prompt);
}
