#pragma once

#include "Containers/UnrealString.h"
#include "UObject/NameTypes.h"

/** An object that lies directly in a package: "/Script/Engine.Blueprint". */
struct FTopLevelAssetPath
{
	FTopLevelAssetPath() = default;
	FTopLevelAssetPath(FName InPackageName, FName InAssetName)
		: PackageName(InPackageName)
		, AssetName(InAssetName)
	{
	}
	explicit FTopLevelAssetPath(const FString& Path) { TrySetPath(Path); }
	explicit FTopLevelAssetPath(const TCHAR* Path)
		: FTopLevelAssetPath(FString(Path))
	{
	}

	/** @return false, with the path empty, for anything but "/Package" or "/Package.Asset" */
	bool TrySetPath(const FString& Path);

	FName GetPackageName() const { return PackageName; }
	FName GetAssetName() const { return AssetName; }
	FString ToString() const;
	bool IsValid() const { return !PackageName.IsNone(); }
	bool IsNull() const { return !IsValid(); }
	void Reset() { *this = FTopLevelAssetPath(); }

	bool operator==(const FTopLevelAssetPath& Other) const
	{
		return PackageName == Other.PackageName && AssetName == Other.AssetName;
	}
	friend uint32 GetTypeHash(const FTopLevelAssetPath& Path)
	{
		return GetTypeHash(Path.PackageName) * 31 + GetTypeHash(Path.AssetName);
	}

private:
	friend struct FReflected_FTopLevelAssetPath;
	FName PackageName;
	FName AssetName;
};
