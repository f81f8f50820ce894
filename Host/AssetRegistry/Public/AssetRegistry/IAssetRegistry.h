#pragma once

#include "AssetRegistry/ARFilter.h"
#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"

/**
 * Which assets the project has, for the game thread.
 *
 * The content is scanned in the background after the start, so that answers may be incomplete until IsLoadingAssets()
 * is false. Assets that were made and not saved yet are known, too. The order of assets is not specified. Results are
 * added to the arrays.
 */
class IAssetRegistry
{
public:
	DECLARE_EVENT(IAssetRegistry, FFilesLoadedEvent)
	DECLARE_EVENT_OneParam(IAssetRegistry, FAssetAddedEvent, const FAssetData&);
	DECLARE_EVENT_OneParam(IAssetRegistry, FAssetRemovedEvent, const FAssetData&);
	DECLARE_EVENT_OneParam(IAssetRegistry, FAssetUpdatedEvent, const FAssetData&);
	DECLARE_EVENT_TwoParams(IAssetRegistry, FAssetRenamedEvent, const FAssetData&, const FString& /*OldObjectPath*/);

	virtual ~IAssetRegistry() = default;
	/** Null before the module is loaded. */
	static IAssetRegistry* Get();

	/** @return false when the package has none, or is not known yet */
	virtual bool GetAssetsByPackageName(FName PackageName, TArray<FAssetData>& OutAssetData,
		bool bIncludeOnlyOnDiskAssets = false, bool bSkipARFilteredAssets = true) const = 0;
	virtual bool GetAssetsByClass(
		FTopLevelAssetPath ClassPathName, TArray<FAssetData>& OutAssetData, bool bSearchSubClasses = false) const = 0;
	/** The assets directly in a folder, "/Game/Folder", or with bRecursive below it. */
	virtual bool GetAssetsByPath(FName PackagePath, TArray<FAssetData>& OutAssetData, bool bRecursive = false,
		bool bIncludeOnlyOnDiskAssets = false) const = 0;
	/** Invalid when there is no such asset. */
	virtual FAssetData GetAssetByObjectPath(
		const FSoftObjectPath& ObjectPath, bool bIncludeOnlyOnDiskAssets = false) const = 0;
	/** @return false, with nothing added, for an empty filter */
	virtual bool GetAssets(
		const FARFilter& Filter, TArray<FAssetData>& OutAssetData, bool bSkipARFilteredAssets = true) const = 0;
	virtual bool GetAllAssets(TArray<FAssetData>& OutAssetData, bool bIncludeOnlyOnDiskAssets = false) const = 0;

	virtual bool GetReferencers(FName PackageName, TArray<FName>& OutReferencers) const = 0;

	/** Scans all content: at once, or in the background. Files that are known and have not changed are not read again.
	 */
	virtual void SearchAllAssets(bool bSynchronousSearch) = 0;
	virtual bool IsLoadingAssets() const = 0;
	/** Blocks until the scan is done. */
	virtual void WaitForCompletion() = 0;
	/** Reads these files at once; with bForceRescan those that are known, too. A file that is gone is forgotten. */
	virtual void ScanFilesSynchronous(const TArray<FString>& InFilePaths, bool bForceRescan = false) = 0;
	/**
	 * Looks through folders ("/Game/Folder") at once: files that are new, have changed or are gone; with bForceRescan
	 * all of them are read.
	 */
	virtual void ScanPathsSynchronous(const TArray<FString>& InPaths, bool bForceRescan = false) = 0;

	// See FAssetRegistryModule.
	virtual void AssetCreated(UObject* NewAsset) = 0;
	virtual void AssetDeleted(UObject* DeletedAsset) = 0;
	virtual void AssetRenamed(const UObject* RenamedAsset, const FString& OldObjectPath) = 0;

	virtual FAssetAddedEvent& OnAssetAdded() = 0;
	virtual FAssetRemovedEvent& OnAssetRemoved() = 0;
	virtual FAssetRenamedEvent& OnAssetRenamed() = 0;
	/** An asset that was known has been saved, or its file has changed. */
	virtual FAssetUpdatedEvent& OnAssetUpdated() = 0;
	/** When the scan that began with the editor is done. */
	virtual FFilesLoadedEvent& OnFilesLoaded() = 0;
};
