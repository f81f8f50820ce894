#pragma once

#include "Agent/FileHistory.h"
#include "CoreMinimal.h"

/** What revision control is going to check in, brought back to what it was before the conversation. */
namespace KestrelRevisionIndex
{
/**
 * Reverts what revision control was told about a file, which may change the content of the file itself.
 *
 * @return false when it would not, for instance since another program works on the repository
 */
bool Revert(const FString& FullPath, const FFileHistoryEntry& Entry);

/** Tells revision control about a file that is back what it knew before the conversation. */
void Restore(const FString& FullPath, const FFileHistoryEntry& Entry);

/** Whether the file was missing on the disk before the change, while revision control still had it. */
bool WasMissing(const FFileHistoryEntry& Entry);
}
