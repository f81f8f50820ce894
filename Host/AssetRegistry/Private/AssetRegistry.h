#pragma once

#include "AssetRegistry/IAssetRegistry.h"
#include "Containers/Ticker.h"
#include "Misc/DateTime.h"
#include "UObject/Package.h"

/** Every asset of a package file belongs to the package's name; a package that has been looked at is known, even
 * without assets. */
class FAssetRegistry final : public IAssetRegistry
{
public:
	FAssetRegistry();
	~FAssetRegistry() override;
	UE_NONCOPYABLE(FAssetRegistry)

	bool GetAssetsByPackageName(FName PackageName, TArray<FAssetData>& OutAssetData, bool bIncludeOnlyOnDiskAssets,
		bool bSkipARFilteredAssets) const override;
	bool GetAssetsByClass(
		FTopLevelAssetPath ClassPathName, TArray<FAssetData>& OutAssetData, bool bSearchSubClasses) const override;
	bool GetAssetsByPath(FName PackagePath, TArray<FAssetData>& OutAssetData, bool bRecursive,
		bool bIncludeOnlyOnDiskAssets) const override;
	FAssetData GetAssetByObjectPath(const FSoftObjectPath& ObjectPath, bool bIncludeOnlyOnDiskAssets) const override;
	bool GetAssets(
		const FARFilter& Filter, TArray<FAssetData>& OutAssetData, bool bSkipARFilteredAssets) const override;
	bool GetAllAssets(TArray<FAssetData>& OutAssetData, bool bIncludeOnlyOnDiskAssets) const override;
	bool GetReferencers(FName PackageName, TArray<FName>& OutReferencers) const override;

	void SearchAllAssets(bool bSynchronousSearch) override;
	bool IsLoadingAssets() const override { return NextFile < Files.Num(); }
	void WaitForCompletion() override;
	void ScanFilesSynchronous(const TArray<FString>& InFilePaths, bool bForceRescan) override;
	void ScanPathsSynchronous(const TArray<FString>& InPaths, bool bForceRescan) override;

	void AssetCreated(UObject* NewAsset) override;
	void AssetDeleted(UObject* DeletedAsset) override;
	void AssetRenamed(const UObject* RenamedAsset, const FString& OldObjectPath) override;

	FAssetAddedEvent& OnAssetAdded() override { return AssetAdded; }
	FAssetRemovedEvent& OnAssetRemoved() override { return AssetRemoved; }
	FAssetRenamedEvent& OnAssetRenamed() override { return AssetIsRenamed; }
	FAssetUpdatedEvent& OnAssetUpdated() override { return AssetUpdated; }
	FFilesLoadedEvent& OnFilesLoaded() override { return FilesLoaded; }

private:
	struct FPackageEntry
	{
		TArray<FAssetData> OnDisk;
		TArray<FAssetData> InMemory; // made, and not saved yet
		TArray<FName> Needs;
		FDateTime FileTime; // of the file when it was read
		int64 FileSize = INDEX_NONE;
		bool bForeign = false; // saved by the real engine
	};

	void StartScan();
	/** Looks at some more of the files. @return true as long as there are more */
	bool ScanSome(float);
	void ScanFile(const FString& FileName);
	void ScanFileIfChanged(const FString& FileName);
	/** One line for all that were found since the last time: a project may hold thousands. */
	void ReportForeignPackages();
	bool HasChanged(const FString& FileName, FName PackageName) const;
	/** A file's contents take the place of what was known of it. Entry null: the file is gone. */
	void SetOnDisk(FName PackageName, FPackageEntry* Entry);
	void SetNeeds(FName PackageName, const TArray<FName>& OldNeeds, const TArray<FName>& NewNeeds);
	void OnPackageSaved(const FString& FileName, UPackage* Package, FObjectPostSaveContext Context);
	/** Forgets an asset that is only in memory. @return whether it was known */
	bool RemoveInMemory(FName PackageName, FName AssetName);

	template <typename FunctionType>
	void ForEachAsset(bool bOnlyOnDisk, FunctionType Function) const;
	template <typename FunctionType>
	static void ForEachAsset(const FPackageEntry& Entry, bool bOnlyOnDisk, FunctionType Function);

	TMap<FName, FPackageEntry> Packages;
	TMap<FName, TSet<FName>> Referencers;
	TArray<FString> Files; // of the scan that is running
	int32 NextFile = 0;    // the first of them that has not been looked at
	TArray<FName> UnreportedForeign;
	FTSTicker::FDelegateHandle Ticker;
	FDelegateHandle SavedHandle;
	FAssetAddedEvent AssetAdded;
	FAssetRemovedEvent AssetRemoved;
	FAssetRenamedEvent AssetIsRenamed;
	FAssetUpdatedEvent AssetUpdated;
	FFilesLoadedEvent FilesLoaded;
};
