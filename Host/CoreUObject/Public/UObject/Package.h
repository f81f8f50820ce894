#pragma once

#include "UObject/Object.h"

enum EPackageFlags : uint32
{
	PKG_None = 0x00000000,
	PKG_NewlyCreated = 0x00000001,
	PKG_CompiledIn = 0x00000010, // holds the types of a module
	PKG_PlayInEditor = 0x10000000,
};
ENUM_CLASS_FLAGS(EPackageFlags)

/** What lies at the top: the objects of one file, or the types of one module. Its name is its whole path. */
class UPackage : public UObject
{
public:
	DECLARE_REFLECTED_CLASS(UPackage, UObject)
	DECLARE_MULTICAST_DELEGATE_TwoParams(FOnPackageDirtyStateChanged, UPackage*, bool /*bIsDirty*/);

	bool IsDirty() const { return bDirty; }
	void SetDirtyFlag(bool bInIsDirty);
	/** Told when the package becomes dirty or clean. */
	static FOnPackageDirtyStateChanged& OnPackageDirtyStateChanged();

	bool HasAnyPackageFlags(uint32 FlagsToCheck) const { return (PackageFlags & FlagsToCheck) != 0; }
	void SetPackageFlags(uint32 NewFlags) { PackageFlags |= NewFlags; }
	void ClearPackageFlags(uint32 NewFlags) { PackageFlags &= ~NewFlags; }

	/** The object that the package is named after. */
	UObject* FindAssetInPackage() const;

private:
	bool bDirty = false;
	uint32 PackageFlags = PKG_None;
};
