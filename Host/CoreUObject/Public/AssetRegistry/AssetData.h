#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "UObject/NameTypes.h"
#include "UObject/TopLevelAssetPath.h"

/** What is known of an asset without loading it. Names ignore case. */
struct FAssetData
{
	FAssetData() = default;
	FAssetData(FName InPackageName, FName InPackagePath, FName InAssetName, FTopLevelAssetPath InAssetClassPath)
		: PackageName(InPackageName)
		, PackagePath(InPackagePath)
		, AssetName(InAssetName)
		, AssetClassPath(InAssetClassPath)
	{
	}

	bool IsValid() const { return !PackageName.IsNone(); }
	/** "/Game/Folder/Asset.Asset" */
	FString GetObjectPathString() const { return PackageName.ToString() + TEXT(".") + AssetName.ToString(); }

	FName PackageName; // "/Game/Folder/Asset"
	FName PackagePath; // "/Game/Folder"
	FName AssetName;
	FTopLevelAssetPath AssetClassPath;
};
