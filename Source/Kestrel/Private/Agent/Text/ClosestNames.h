#pragma once

#include "CoreMinimal.h"

/** Names that somebody may have meant who wrote one that nothing has. */
namespace KestrelClosestNames
{
/** Letters to be changed, put in, taken out or swapped with their neighbour to make one name of another; case is
 * ignored. */
KESTREL_API int32 CountEdits(const FString& A, const FString& B);

/**
 * The closest names, best first: those that take few edits for their length, or that have the name in them.
 *
 * @param Candidates  of a great number, only the first 20,000 are looked at
 */
KESTREL_API TArray<FString> Find(const FString& Name, const TArray<FString>& Candidates, int32 MaxCount = 3);
}
