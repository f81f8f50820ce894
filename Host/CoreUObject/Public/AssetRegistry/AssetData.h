#pragma once

#include "AssetRegistry/AssetDataTagMap.h"
#include "Containers/Array.h"
#include "UObject/SoftObjectPath.h"
#include "UObject/TopLevelAssetPath.h"

class UClass;
class UObject;

enum class EResolveClass
{
	No,
	Yes,
};

/** What is known of an asset without loading it. Names ignore case. */
struct FAssetData
{
	FAssetData() = default;
	FAssetData(FName InPackageName, FName InPackagePath, FName InAssetName, FTopLevelAssetPath InAssetClassPath,
		FAssetDataTagMap InTags = FAssetDataTagMap())
		: PackageName(InPackageName)
		, PackagePath(InPackagePath)
		, AssetName(InAssetName)
		, AssetClassPath(InAssetClassPath)
		, TagsAndValues(MoveTemp(InTags))
	{
	}
	/** Of an object in memory. */
	explicit FAssetData(const UObject* InAsset);

	bool IsValid() const { return !PackageName.IsNone(); }
	/** "/Game/Folder/Asset.Asset" */
	FString GetObjectPathString() const { return PackageName.ToString() + TEXT(".") + AssetName.ToString(); }
	FSoftObjectPath GetSoftObjectPath() const { return FSoftObjectPath(GetObjectPathString()); }
	/** "/Script/Engine.Blueprint'/Game/Folder/Asset.Asset'" */
	FString GetExportTextName() const;
	FString GetFullName() const { return AssetClassPath.ToString() + TEXT(" ") + GetObjectPathString(); }

	/** The asset itself, not what it generates; loaded if need be. Null when it cannot be. */
	UObject* GetAsset() const;
	/** Null when the class is not loaded; with EResolveClass::Yes, it is loaded if need be. */
	UClass* GetClass(EResolveClass ResolveClass = EResolveClass::No) const;
	bool IsAssetLoaded() const;

	/** False, with OutTagValue left alone, when there is no such tag. */
	bool GetTagValue(FName InTagName, FString& OutTagValue) const;
	/** The type's empty value when there is no such tag. */
	template <typename ValueType>
	ValueType GetTagValueRef(FName InTagName) const
	{
		ValueType Value{};
		GetTagValue(InTagName, Value);
		return Value;
	}

	bool operator==(const FAssetData& Other) const
	{
		return PackageName == Other.PackageName && AssetName == Other.AssetName;
	}
	friend uint32 GetTypeHash(const FAssetData& Data)
	{
		return HashCombine(GetTypeHash(Data.PackageName), GetTypeHash(Data.AssetName));
	}

	FName PackageName; // "/Game/Folder/Asset"
	FName PackagePath; // "/Game/Folder"
	FName AssetName;
	FTopLevelAssetPath AssetClassPath;
	FAssetDataTagMapSharedView TagsAndValues;
	uint32 PackageFlags = 0;
};
