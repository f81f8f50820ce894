#include "UObject/Package.h"

#include "UObject/Class.h"

void UPackage::SetDirtyFlag(bool bInIsDirty)
{
	if (bDirty != bInIsDirty)
	{
		bDirty = bInIsDirty;
		OnPackageDirtyStateChanged().Broadcast(this, bDirty);
	}
}

UPackage::FOnPackageDirtyStateChanged& UPackage::OnPackageDirtyStateChanged()
{
	static FOnPackageDirtyStateChanged Delegate;
	return Delegate;
}

UPackage::FOnPackageSaved UPackage::PackageSavedWithContextEvent;

UObject* UPackage::FindAssetInPackage() const
{
	const FString Path = GetName();
	int32 LastSlash = INDEX_NONE;
	Path.FindLastChar(u'/', LastSlash);
	return StaticFindObjectFast(nullptr, const_cast<UPackage*>(this), FName(*Path.RightChop(LastSlash + 1)));
}

UPackage* CreatePackage(const TCHAR* PackageName)
{
	const FString Name(PackageName);
	checkf(Name.StartsWith(TEXT("/")) && !Name.EndsWith(TEXT("/")) && !Name.Contains(TEXT("//")) && Name.Len() > 1,
		TEXT("'%s' is no long package name: it starts with a slash, ends without one and has none doubled"),
		PackageName);
	if (UPackage* Existing = FindObjectFast<UPackage>(nullptr, FName(PackageName)))
	{
		return Existing;
	}
	return NewObject<UPackage>(nullptr, FName(PackageName), RF_Public);
}

UPackage* GetTransientPackage()
{
	static UPackage* const Package = [] {
		UPackage* NewPackage = CreatePackage(TEXT("/Engine/Transient"));
		NewPackage->AddToRoot();
		return NewPackage;
	}();
	return Package;
}

UObject* GetTransientPackageAsObject()
{
	return GetTransientPackage();
}
