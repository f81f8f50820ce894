#include "AssetTools.h"

#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetToolsModule.h"
#include "CoreGlobals.h"
#include "Factories/Factory.h"
#include "HAL/FileManager.h"
#include "Misc/FeedbackContext.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"
#include "UObject/CopyPackage.h"
#include "UObject/Package.h"
#include "UObject/SavePackage.h"
#include "UObject/UObjectHash.h"

DEFINE_LOG_CATEGORY_STATIC(LogAssetTools, Log, All);

namespace AssetToolsImpl
{
FString GetReasonAgainst(const FString& AssetName)
{
	if (AssetName.IsEmpty() || AssetName.Len() >= NAME_SIZE)
	{
		return TEXT("the name is empty or too long");
	}
	const bool bValid = FName::IsValidXName(AssetName, INVALID_OBJECTNAME_CHARACTERS) &&
						FName::IsValidXName(AssetName, INVALID_LONGPACKAGE_CHARACTERS);
	return bValid ? FString() : FString(TEXT("the name has a character in it that names must not have"));
}

/** Without doubled slashes and without one at the end. */
FString TidyPath(const FString& Path)
{
	TArray<FString> Parts;
	Path.ParseIntoArray(Parts, TEXT("/"));
	return (Path.StartsWith(TEXT("/")) ? TEXT("/") : TEXT("")) + FString::Join(Parts, TEXT("/"));
}

void Complain(const TCHAR* What, const FString& Name, const FString& Reason)
{
	UE_LOG(LogAssetTools, Warning, TEXT("%s '%s' failed: %s."), What, *Name, *Reason);
}

void Announce(UObject* Asset)
{
	FAssetRegistryModule::AssetCreated(Asset);
	Asset->MarkPackageDirty();
}

bool Save(UPackage& Package)
{
	FString FileName;
	if (!FPackageName::DoesPackageExist(Package.GetName(), &FileName))
	{
		FileName = FPackageName::LongPackageNameToFilename(Package.GetName(), FPackageName::GetAssetPackageExtension());
	}
	FSavePackageArgs Args;
	Args.TopLevelFlags = RF_Public | RF_Standalone;
	Args.Error = GWarn;
	return UPackage::SavePackage(&Package, nullptr, *FileName, Args);
}

/** What an asset has made, such as a Blueprint's class, goes where it has gone. */
void MoveRest(UPackage& OldPackage, UPackage& NewPackage, const FString& OldName, const FString& NewName)
{
	ForEachObjectWithOuter(
		&OldPackage,
		[&](UObject* Object) {
			const FString Name = GetNameInCopy(Object->GetName(), OldName, NewName);
			if (!Object->Rename(*Name, &NewPackage))
			{
				UE_LOG(LogAssetTools, Warning, TEXT("%s stays behind."), *Object->GetPathName());
			}
		},
		false);
}

/** Loads what refers to a saved package, so that it follows when the objects move. */
TArray<UPackage*> LoadReferencers(FName PackageName)
{
	TArray<FName> Names;
	IAssetRegistry& Registry = FAssetRegistryModule::GetRegistry();
	Registry.WaitForCompletion();
	Registry.GetReferencers(PackageName, Names);
	TArray<UPackage*> Packages;
	for (const FName Name : Names)
	{
		if (UPackage* const Package = LoadPackage(nullptr, *Name.ToString(), LOAD_None))
		{
			Packages.Add(Package);
		}
	}
	return Packages;
}
}

UPackage* UAssetToolsImpl::MakePackage(const FString& AssetName, const FString& PackagePath)
{
	const FString PackageName = AssetToolsImpl::TidyPath(PackagePath) + TEXT("/") + AssetName;
	FString Reason = AssetToolsImpl::GetReasonAgainst(AssetName);
	FText PackageReason;
	if (Reason.IsEmpty() && !FPackageName::IsValidLongPackageName(PackageName, false, &PackageReason))
	{
		Reason = PackageReason.ToString();
	}
	if (Reason.IsEmpty() && FPackageName::DoesPackageExist(PackageName))
	{
		LoadPackage(nullptr, *PackageName, LOAD_None);
		Reason = TEXT("there is an asset of this name");
	}
	UPackage* const Package = Reason.IsEmpty() ? CreatePackage(*PackageName) : nullptr;
	if (Package && StaticFindObjectFast(UObject::StaticClass(), Package, FName(*AssetName)))
	{
		Reason = TEXT("there is an object of this name");
	}
	if (!Reason.IsEmpty())
	{
		AssetToolsImpl::Complain(TEXT("Making"), PackageName, Reason);
		return nullptr;
	}
	Package->MarkAsFullyLoaded();
	return Package;
}

UObject* UAssetToolsImpl::CreateAsset(
	const FString& AssetName, const FString& PackagePath, UClass* AssetClass, UFactory* Factory, FName CallingContext)
{
	UClass* const Class = AssetClass ? AssetClass : Factory ? Factory->GetSupportedClass() : nullptr;
	if (!Factory || !Class)
	{
		AssetToolsImpl::Complain(TEXT("Making"), AssetName, TEXT("there is no factory, or no class"));
		return nullptr;
	}
	if (!ensureMsgf(!Factory->GetSupportedClass() || Class->IsChildOf(Factory->GetSupportedClass()),
			TEXT("%s makes no %s"), *Factory->GetClass()->GetName(), *Class->GetName()))
	{
		return nullptr;
	}
	UPackage* const Package = MakePackage(AssetName, PackagePath);
	if (!Package)
	{
		return nullptr;
	}
	UObject* const Asset = Factory->FactoryCreateNew(Class, Package, FName(*AssetName),
		RF_Public | RF_Standalone | RF_Transactional, nullptr, GWarn, CallingContext);
	if (Asset)
	{
		AssetToolsImpl::Announce(Asset);
	}
	return Asset;
}

UObject* UAssetToolsImpl::DuplicateAsset(const FString& AssetName, const FString& PackagePath, UObject* OriginalObject)
{
	UPackage* const Package = OriginalObject ? MakePackage(AssetName, PackagePath) : nullptr;
	if (!Package)
	{
		return nullptr;
	}
	// With the whole package: a Blueprint is nothing without its class and its class's defaults.
	if (OriginalObject->IsAsset())
	{
		CopyPackage(*OriginalObject->GetPackage(), Package->GetName());
	}
	else
	{
		DuplicateObject(OriginalObject, Package, FName(*AssetName));
	}
	UObject* const Asset = Package->FindAssetInPackage();
	if (Asset)
	{
		Asset->SetFlags(RF_Public | RF_Standalone | RF_Transactional);
		AssetToolsImpl::Announce(Asset);
	}
	return Asset;
}

bool UAssetToolsImpl::RenameAssets(const TArray<FAssetRenameData>& AssetsAndNames)
{
	bool bAllRenamed = true;
	for (const FAssetRenameData& Each : AssetsAndNames)
	{
		bAllRenamed &= RenameAsset(Each);
	}
	return bAllRenamed;
}

bool UAssetToolsImpl::RenameAsset(const FAssetRenameData& Data)
{
	UObject* const Asset = Data.Asset.Get();
	UPackage* const NewPackage = Asset ? MakePackage(Data.NewName, Data.NewPackagePath) : nullptr;
	if (!NewPackage)
	{
		return false;
	}
	UPackage* const OldPackage = Asset->GetPackage();
	FString OldFile;
	const bool bSaved = FPackageName::DoesPackageExist(OldPackage->GetName(), &OldFile);
	const TArray<UPackage*> Referencers = AssetToolsImpl::LoadReferencers(OldPackage->GetFName());
	const FString OldPath = Asset->GetPathName();
	const FString OldName = Asset->GetName();
	if (!Asset->Rename(*Data.NewName, NewPackage))
	{
		return false;
	}
	AssetToolsImpl::MoveRest(*OldPackage, *NewPackage, OldName, Data.NewName);
	FAssetRegistryModule::AssetRenamed(Asset, OldPath);
	if (!bSaved)
	{
		return true;
	}
	// The old file goes last: until everything else is on disk, it is what there is to load.
	bool bAllSaved = AssetToolsImpl::Save(*NewPackage);
	for (UPackage* Referencer : Referencers)
	{
		bAllSaved &= AssetToolsImpl::Save(*Referencer);
	}
	if (bAllSaved && IFileManager::Get().Delete(*OldFile))
	{
		FAssetRegistryModule::GetRegistry().ScanFilesSynchronous({ OldFile }, true);
		OldPackage->SetDirtyFlag(false);
	}
	return bAllSaved;
}

void UAssetToolsImpl::CreateUniqueAssetName(
	const FString& InBasePackageName, const FString& InSuffix, FString& OutPackageName, FString& OutAssetName)
{
	const FString Base = AssetToolsImpl::TidyPath(InBasePackageName) + InSuffix;
	OutPackageName = Base;
	for (int32 Number = 1; FPackageName::DoesPackageExist(OutPackageName) || FindPackage(nullptr, *OutPackageName);
		 ++Number)
	{
		OutPackageName = FString::Printf(TEXT("%s%d"), *Base, Number);
	}
	OutAssetName = FPackageName::GetShortName(OutPackageName);
}

IAssetTools& IAssetTools::Get()
{
	return FAssetToolsModule::GetModule().Get();
}

TScriptInterface<IAssetTools> UAssetToolsHelpers::GetAssetTools()
{
	return TScriptInterface<IAssetTools>(IAssetTools::Get()._getUObject());
}
