#pragma once

#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"

class UBehaviorTree;
class UBlueprint;
class UClass;

/** Where a name leads. */
struct FKestrelAssetAddress
{
	/** "/Game/Doors/BP_Door"; empty when nothing has the name. */
	FString GetPackageName() const;
	bool IsFound() const { return !ObjectPath.IsEmpty(); }
	/** Letter case is none of a package's. */
	bool IsSameAssetAs(const FKestrelAssetAddress& Other) const
	{
		return ObjectPath.Equals(Other.ObjectPath, ESearchCase::IgnoreCase);
	}

	FString Name;       // as it was given
	FString ObjectPath; // "/Game/Doors/BP_Door.BP_Door"
};

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
/** Loads the very asset that the name led to, whatever it leads to by now. */
UBlueprint* LoadBlueprint(const FKestrelAssetAddress& Address, FString& OutError);
UBehaviorTree* LoadBehaviorTree(const FKestrelAssetAddress& Address, FString& OutError);
}

/**
 * Finds assets for a row of names, without loading them. What the asset registry lists and what the content folders
 * hold is asked for once.
 */
class FKestrelAssetFinder
{
public:
	FKestrelAssetFinder() = default;
	UE_NONCOPYABLE(FKestrelAssetFinder)

	/**
	 * What the tools mean by a name, in this order:
	 * 1. the first asset of the class, or of one derived from it, that the registry lists by that name
	 * 2. one in memory that the registry does not list
	 * 3. a package of the project that is named like it and of which the registry knows no asset
	 */
	FKestrelAssetAddress Find(const UClass& Class, const FString& Name);
	/** For a name that nothing has: up to three of the assets that somebody may have meant. */
	TArray<FString> FindClosest(const UClass& Class, const FString& Name);

private:
	FString FindListed(const UClass& Class, FName Name);
	FString FindUnlisted(const FString& Name);

	TMap<FName, TArray<FAssetData>> Listed;                   // by class
	TOptional<TMap<FString, TArray<FString>>> PackagesByName; // long names, by short ones
};
