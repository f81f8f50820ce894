#pragma once

#include "Containers/UnrealString.h"
#include "UObject/NameTypes.h"

class FOutputDevice;
class UClass;
class UObject;

/** The path of an object that need not be in memory: "/Game/Folder/Asset.Asset:Subobject". */
struct FSoftObjectPath
{
	FSoftObjectPath() = default;
	FSoftObjectPath(const FString& Path) { SetPath(Path); }
	FSoftObjectPath(const TCHAR* Path) { SetPath(Path); }
	FSoftObjectPath(const UObject* Object);

	void SetPath(const FString& Path);
	FString ToString() const { return AssetPath; }
	/** "/Game/Folder/Asset" */
	FString GetLongPackageName() const;
	FString GetAssetName() const;
	bool IsNull() const { return AssetPath.IsEmpty(); }
	bool IsValid() const { return !IsNull(); }
	void Reset() { AssetPath.Reset(); }
	/** The object if it is in memory. */
	UObject* ResolveObject() const;
	/** The object, loaded if need be; null, with a warning, when it cannot be. */
	UObject* TryLoad() const;

	bool ExportTextItem(FString& ValueStr, const FSoftObjectPath& DefaultValue, UObject* Parent, int32 PortFlags,
		UObject* ExportRootScope) const;
	bool ImportTextItem(const TCHAR*& Buffer, int32 PortFlags, UObject* Parent, FOutputDevice* ErrorText);

	bool operator==(const FSoftObjectPath& Other) const { return AssetPath == Other.AssetPath; }
	friend uint32 GetTypeHash(const FSoftObjectPath& Path) { return GetTypeHash(Path.AssetPath); }

private:
	FString AssetPath;
};

/** The same for a class. */
struct FSoftClassPath : FSoftObjectPath
{
	using FSoftObjectPath::FSoftObjectPath;
	UClass* ResolveClass() const;
};

template <typename StructType>
struct TStructOpsTypeTraits;

template <>
struct TStructOpsTypeTraits<FSoftObjectPath>
{
	enum
	{
		WithIdenticalViaEquality = true,
		WithExportTextItem = true,
		WithImportTextItem = true,
	};
};

template <>
struct TStructOpsTypeTraits<FSoftClassPath> : TStructOpsTypeTraits<FSoftObjectPath>
{
};
