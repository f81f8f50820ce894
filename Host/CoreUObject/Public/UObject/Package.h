#pragma once

#include "UObject/Object.h"
#include "UObject/ObjectSaveContext.h"

enum EPackageFlags : uint32
{
	PKG_None = 0x00000000,
	PKG_NewlyCreated = 0x00000001,
	PKG_CompiledIn = 0x00000010, // holds the types of a module
	PKG_PlayInEditor = 0x10000000,
};
ENUM_CLASS_FLAGS(EPackageFlags)

struct FSavePackageArgs;
struct FSavePackageResultStruct;

/** What lies at the top: the objects of one file, or the types of one module. Its name is its whole path. */
class UPackage : public UObject
{
public:
	DECLARE_REFLECTED_CLASS(UPackage, UObject)
	DECLARE_MULTICAST_DELEGATE_TwoParams(FOnPackageDirtyStateChanged, UPackage*, bool /*bIsDirty*/);

	DECLARE_MULTICAST_DELEGATE_ThreeParams(
		FOnPackageSaved, const FString& /*Filename*/, UPackage*, FObjectPostSaveContext);

	/**
	 * Writes the objects of a package to a file: InAsset, what has one of the flags, and all that these refer to in the
	 * package. The file is replaced as a whole or not at all; the same content gives the same bytes. See SavePackage.h.
	 */
	static FSavePackageResultStruct Save(
		UPackage* InOuter, UObject* InAsset, const TCHAR* Filename, const FSavePackageArgs& SaveArgs);
	/** The same; tells only whether it went well. */
	static bool SavePackage(
		UPackage* InOuter, UObject* InAsset, const TCHAR* Filename, const FSavePackageArgs& SaveArgs);
	/** Told of each package that was saved. */
	static FOnPackageSaved PackageSavedWithContextEvent;

	/** Whether all that its file holds is in memory. */
	bool IsFullyLoaded() const { return bFullyLoaded; }
	void MarkAsFullyLoaded() { bFullyLoaded = true; }

	bool IsDirty() const { return bDirty; }
	void SetDirtyFlag(bool bInIsDirty);
	/** Told when the package becomes dirty or clean. */
	static FOnPackageDirtyStateChanged& OnPackageDirtyStateChanged();

	bool HasAnyPackageFlags(uint32 FlagsToCheck) const { return (PackageFlags & FlagsToCheck) != 0; }
	void SetPackageFlags(uint32 NewFlags) { PackageFlags |= NewFlags; }

	/** The object that the package is named after. */
	UObject* FindAssetInPackage() const;

private:
	bool bDirty = false;
	bool bFullyLoaded = false;
	uint32 PackageFlags = PKG_None;
};
