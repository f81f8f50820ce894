#pragma once

#include "CoreMinimal.h"

class FJsonObject;

/** Prompts that clients offer to their users. */
namespace KestrelMcpPrompts
{
/** The result of "prompts/list". */
TSharedRef<FJsonObject> MakeList();
/**
 * The result of "prompts/get".
 *
 * @param OutError  why there is none, when it is null
 */
KESTREL_API TSharedPtr<FJsonObject> Get(const FString& Name, const FJsonObject& Arguments, FString& OutError);
/** Whether a prompt has an argument of that name. */
bool HasArgument(const FString& Name, const FString& Argument);
}
