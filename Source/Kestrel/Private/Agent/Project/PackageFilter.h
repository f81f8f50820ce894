#pragma once

#include "Agent/Project/SearchWords.h"
#include "Agent/Work/SlicedWork.h"
#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "UObject/WeakObjectPtrTemplates.h"

/**
 * Finds out which Blueprints that are not in memory have to be loaded to search them: not those that cannot have all
 * words of the text in them, nor get them from assets that they depend on. In doubt they are loaded.
 */
class FKestrelPackageFilter final : public IKestrelSlicedWork
{
public:
	/** @param InBlueprints  that are searched */
	FKestrelPackageFilter(const FString& Text, TConstArrayView<FAssetData> InBlueprints);

	bool Step(double Deadline) override;
	float GetProgress() const override;

	/** At the end: whether a Blueprint in the package may have the text in it. */
	bool MayMatch(FName Package) const;
	/** Of a package; empty for one that has no place on the disk. */
	const FString& GetFile(FName Package);

private:
	enum class EStage : uint8
	{
		LookForUnloaded,
		CollectNames,
		ReadPackages,
		FollowReferences,
		Done,
	};

	/** Does a small part of the present stage's work. */
	void Advance();
	void LookForUnloaded();
	void CollectNames();
	void ReadPackage();
	void FollowReferences();
	/** The assets that what a Blueprint shows can come from. */
	void ListSources();
	void AddBits(FName Package, uint32 Bits);
	FString FindFile(const FString& Package);

	EStage Stage = EStage::LookForUnloaded;
	int32 Next = 0; // of what the stage goes through
	FKestrelSearchWords Words;
	const TConstArrayView<FAssetData> Blueprints;
	TArray<TWeakObjectPtr<UObject>> Types; // whose names may stand for words
	TArray<FName> Sources;                 // packages
	TMap<FName, FString> Files;            // by package
	FString LastFolder;                    // of packages
	FString LastFolderFiles;               // where it is on the disk
	TMap<FName, uint32> Found;             // words, by package
	TArray<FName> ToFollow;                // packages whose words their users may show
};
