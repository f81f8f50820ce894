#pragma once

#include "CoreMinimal.h"

/** Names that somebody may have meant who wrote one that nothing has. */
namespace KestrelClosestNames
{
/** Of a greater number, the first are looked at. */
constexpr int32 MaxCandidates = 5000;

/** Letters to be changed, put in, taken out or swapped with their neighbour to make one name of another; case is
 * ignored. */
KESTREL_API int32 CountEdits(const FString& A, const FString& B);

/**
 * The closest names, best first: those that take few edits for their length, or that have the name in them.
 */
KESTREL_API TArray<FString> Find(const FString& Name, const TArray<FString>& Candidates, int32 MaxCount = 3);
}
