#pragma once

#include "CoreMinimal.h"

class UBehaviorTree;
class UBlueprint;
class UClass;
struct FAssetData;

/**
 * Finds Blueprints and other assets for all tools alike: those of derived classes, such as widget Blueprints, are
 * Blueprints, too. What the asset registry does not know while its first scan runs is waited for.
 */
namespace KestrelBlueprintLookup
{
/** The assets of a class and of classes derived from it, all of them: a scan that is running is waited for. */
TArray<FAssetData> ListAssets(const UClass& Class);
/** The first such asset that has the name, in any letter case, in whatever folder it lies. */
bool FindAsset(const UClass& Class, const FString& Name, FAssetData& OutAsset);
/**
 * Loads the asset of the name.
 *
 * @param OutError  why there is none, as a sentence for the user: it does not exist, or exists and cannot be loaded
 */
UBlueprint* LoadBlueprint(const FString& Name, FString& OutError);
UBehaviorTree* LoadBehaviorTree(const FString& Name, FString& OutError);
}
