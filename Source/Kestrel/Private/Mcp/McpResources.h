#pragma once

#include "CoreMinimal.h"

class FJsonObject;

/** What clients can read without a tool, by the same rules: only what needs nobody's approval. */
namespace KestrelMcpResources
{
/** The result of "resources/list". */
TSharedRef<FJsonObject> MakeList();
/** The result of "resources/templates/list". */
TSharedRef<FJsonObject> MakeTemplateList();
/**
 * The result of "resources/read".
 *
 * @param OutError  why there is none, when it is null
 */
KESTREL_API TSharedPtr<FJsonObject> Read(const FString& Uri, FString& OutError);
/**
 * What a value may be continued to.
 *
 * @param Argument  a variable of a template, or an argument of a prompt: "path", "blueprint_name" ...
 * @return at most 100 values; unset for an argument that is not known
 */
KESTREL_API TOptional<TArray<FString>> Complete(const FString& Argument, const FString& Value);
}
