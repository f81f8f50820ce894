#pragma once

#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"

/**
 * Which assets the project has, for the game thread.
 *
 * The content is scanned in the background after the start, so that answers may be incomplete until IsLoadingAssets()
 * is false. The order of assets is not specified. Results are added to the arrays.
 */
class IAssetRegistry
{
public:
	DECLARE_EVENT(IAssetRegistry, FFilesLoadedEvent)

	virtual ~IAssetRegistry() = default;
	/** Null before the module is loaded. */
	static IAssetRegistry* Get();

	/** @return false when the package has none, or is not known yet */
	virtual bool GetAssetsByPackageName(FName PackageName, TArray<FAssetData>& OutAssetData,
		bool bIncludeOnlyOnDiskAssets = false, bool bSkipARFilteredAssets = true) const = 0;
	virtual bool GetAssetsByClass(
		FTopLevelAssetPath ClassPathName, TArray<FAssetData>& OutAssetData, bool bSearchSubClasses = false) const = 0;
	virtual bool GetAllAssets(TArray<FAssetData>& OutAssetData, bool bIncludeOnlyOnDiskAssets = false) const = 0;

	virtual bool IsLoadingAssets() const = 0;
	/** Blocks until the scan is done. */
	virtual void WaitForCompletion() = 0;
	/** Reads these files at once; with bForceRescan those that are known, too. A file that is gone is forgotten. */
	virtual void ScanFilesSynchronous(const TArray<FString>& InFilePaths, bool bForceRescan = false) = 0;
	/** When the scan that began with the editor is done. */
	virtual FFilesLoadedEvent& OnFilesLoaded() = 0;
};
