#pragma once

#include "AssetRegistry/IAssetRegistry.h"
#include "Containers/Ticker.h"

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
	bool GetAllAssets(TArray<FAssetData>& OutAssetData, bool bIncludeOnlyOnDiskAssets) const override;

	bool IsLoadingAssets() const override { return NextFile < Files.Num(); }
	void WaitForCompletion() override;
	void ScanFilesSynchronous(const TArray<FString>& InFilePaths, bool bForceRescan) override;
	FFilesLoadedEvent& OnFilesLoaded() override { return FilesLoaded; }

private:
	/** Looks at some more of the files. @return true as long as there are more */
	bool ScanSome(float);
	void ScanFile(const FString& FileName);

	TMap<FName, TArray<FAssetData>> AssetsByPackage;
	TArray<FString> Files; // found at the start
	int32 NextFile = 0;    // the first of them that has not been looked at
	FTSTicker::FDelegateHandle Ticker;
	FFilesLoadedEvent FilesLoaded;
};
