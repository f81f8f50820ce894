#pragma once

#include "Containers/Array.h"
#include "Containers/Set.h"
#include "UObject/SoftObjectPath.h"
#include "UObject/TopLevelAssetPath.h"

/** Which assets are wanted: of each member that is not empty, one element has to match. */
struct FARFilter
{
	TArray<FName> PackageNames;
	TArray<FName> PackagePaths; // "/Game", without a slash at the end
	TArray<FSoftObjectPath> SoftObjectPaths;
	TArray<FTopLevelAssetPath> ClassPaths;
	TSet<FTopLevelAssetPath> RecursiveClassPathsExclusionSet;
	bool bRecursivePaths = false;
	bool bRecursiveClasses = false;
	bool bIncludeOnlyOnDiskAssets = false;

	bool IsEmpty() const
	{
		return PackageNames.IsEmpty() && PackagePaths.IsEmpty() && SoftObjectPaths.IsEmpty() && ClassPaths.IsEmpty();
	}
};
