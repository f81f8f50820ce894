#pragma once

#include "CoreMinimal.h"

class FDragDropEvent;
struct FAssetData;

/** What a prompt calls things that are dropped on it, or chosen elsewhere in the editor. */
namespace KestrelDroppedNames
{
/** More is no list that a prompt could make use of. */
constexpr int32 MaxNames = 100;

/** Whether it is something that has names: assets or their folders, or files of another program. */
KESTREL_API bool HasNames(const FDragDropEvent& Event);
/**
 * Package names of assets, and paths of files, from the project's folder if they are in there. One that would not look
 * like what it is, with line breaks for instance, is left out; so are those beyond MaxNames.
 */
KESTREL_API TArray<FString> Find(const FDragDropEvent& Event);
KESTREL_API TArray<FString> OfAssets(const TArray<FAssetData>& Assets);
/** With blanks between, in quotes where a name has some itself. */
KESTREL_API FString Join(const TArray<FString>& Names);
}
