#pragma once

#include "CoreMinimal.h"

/** Why a text that a tool was to replace is not found: for the person who looks at the refusal. */
namespace KestrelNearMatch
{
/** Longer texts are not searched. UTF-16 units. */
constexpr int32 MaxLength = 1000000;

/**
 * What comes closest to a text that is not found: one that differs in letter case, line endings or white space only, or
 * lines that begin like it. Lines are counted from 1.
 *
 * @return a sentence; empty if nothing comes close
 */
KESTREL_API FText Describe(const FString& Text, const FString& Wanted);
}
