#include "EditorAssetLibrary.h"

#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetToolsModule.h"
#include "CoreGlobals.h"
#include "HAL/FileManager.h"
#include "Misc/FeedbackContext.h"
#include "Misc/PackageName.h"
#include "UObject/Class.h"
#include "UObject/Package.h"
#include "UObject/SavePackage.h"
#include "UObject/UObjectHash.h"

DEFINE_LOG_CATEGORY_STATIC(LogEditorScripting, Log, All);

namespace EditorAssetLibrary
{
/** "/Game/F/A.A" of any form of path; empty, with the reason in the log, for what is none. */
FString ToObjectPath(const FString& AssetPath)
{
	FString Path = FPackageName::ExportTextPathToObjectPath(AssetPath);
	const FString PackageName = FPackageName::ObjectPathToPackageName(Path);
	FText Reason;
	if (!FPackageName::IsValidLongPackageName(PackageName, false, &Reason))
	{
		UE_LOG(LogEditorScripting, Error, TEXT("%s"), *Reason.ToString());
		return FString();
	}
	return Path.Len() > PackageName.Len() ? Path : PackageName + TEXT(".") + FPackageName::GetShortName(PackageName);
}

IAssetRegistry& GetScannedRegistry()
{
	IAssetRegistry& Registry = FAssetRegistryModule::GetRegistry();
	Registry.WaitForCompletion();
	return Registry;
}

FString WithoutSlash(const FString& Path)
{
	return Path.EndsWith(TEXT("/")) && Path.Len() > 1 ? Path.LeftChop(1) : Path;
}

/** The folder on disk; empty for one below no mounted root, and for one that ".." leads out of. */
FString ToFolder(const FString& DirectoryPath)
{
	FString Folder;
	const FString Path = WithoutSlash(DirectoryPath) + TEXT("/");
	if (FPackageName::IsValidLongPackageName(Path + TEXT("Asset")))
	{
		FPackageName::TryConvertLongPackageNameToFilename(Path, Folder);
	}
	return Folder;
}

/** Takes what is in a package out of it: nothing finds it there any more, and it goes when nothing refers to it. */
void Empty(UPackage& Package)
{
	ForEachObjectWithOuter(
		&Package,
		[](UObject* Object) {
			Object->ClearFlags(RF_Standalone | RF_Public);
			Object->Rename(nullptr, GetTransientPackage(), REN_DoNotDirty | REN_NonTransactional);
		},
		false);
	Package.SetDirtyFlag(false);
}

FAssetRenameData MakeTarget(UObject* Asset, const FString& DestinationAssetPath)
{
	const FString PackageName = FPackageName::ObjectPathToPackageName(ToObjectPath(DestinationAssetPath));
	return FAssetRenameData(
		Asset, FPackageName::GetLongPackagePath(PackageName), FPackageName::GetShortName(PackageName));
}
}

UObject* UEditorAssetLibrary::LoadAsset(const FString& AssetPath)
{
	const FString Path = EditorAssetLibrary::ToObjectPath(AssetPath);
	return Path.IsEmpty() ? nullptr : StaticLoadObject(UObject::StaticClass(), nullptr, *Path);
}

UClass* UEditorAssetLibrary::LoadBlueprintClass(const FString& AssetPath)
{
	const FString Path = EditorAssetLibrary::ToObjectPath(AssetPath);
	return Path.IsEmpty() ? nullptr : LoadClass<UObject>(nullptr, *(Path + TEXT("_C")));
}

FString UEditorAssetLibrary::GetPathNameForLoadedAsset(UObject* LoadedAsset)
{
	return LoadedAsset ? LoadedAsset->GetPathName() : FString();
}

FAssetData UEditorAssetLibrary::FindAssetData(const FString& AssetPath)
{
	const FString Path = EditorAssetLibrary::ToObjectPath(AssetPath);
	return Path.IsEmpty() ? FAssetData() : EditorAssetLibrary::GetScannedRegistry().GetAssetByObjectPath(Path);
}

bool UEditorAssetLibrary::DoesAssetExist(const FString& AssetPath)
{
	return FindAssetData(AssetPath).IsValid();
}

TArray<FString> UEditorAssetLibrary::FindPackageReferencersForAsset(const FString& AssetPath, bool)
{
	TArray<FName> Names;
	const FAssetData Asset = FindAssetData(AssetPath);
	EditorAssetLibrary::GetScannedRegistry().GetReferencers(Asset.PackageName, Names);
	TArray<FString> Result;
	for (const FName Name : Names)
	{
		Result.Add(Name.ToString());
	}
	Result.Sort();
	return Result;
}

bool UEditorAssetLibrary::DeleteLoadedAsset(UObject* AssetToDelete)
{
	if (!AssetToDelete || !AssetToDelete->IsAsset())
	{
		UE_LOG(LogEditorScripting, Error, TEXT("What is to be deleted is no asset."));
		return false;
	}
	UPackage* const Package = AssetToDelete->GetPackage();
	FString FileName;
	if (FPackageName::DoesPackageExist(Package->GetName(), &FileName) && !IFileManager::Get().Delete(*FileName, true))
	{
		UE_LOG(LogEditorScripting, Error, TEXT("%s cannot be deleted."), *FileName);
		return false;
	}
	FAssetRegistryModule::AssetDeleted(AssetToDelete);
	if (!FileName.IsEmpty())
	{
		FAssetRegistryModule::GetRegistry().ScanFilesSynchronous({ FileName }, true);
	}
	EditorAssetLibrary::Empty(*Package);
	return true;
}

bool UEditorAssetLibrary::DeleteAsset(const FString& AssetPathToDelete)
{
	UObject* const Asset = LoadAsset(AssetPathToDelete);
	return Asset && DeleteLoadedAsset(Asset);
}

UObject* UEditorAssetLibrary::DuplicateLoadedAsset(UObject* SourceAsset, const FString& DestinationAssetPath)
{
	const FAssetRenameData Target = EditorAssetLibrary::MakeTarget(SourceAsset, DestinationAssetPath);
	return IAssetTools::Get().DuplicateAsset(Target.NewName, Target.NewPackagePath, SourceAsset);
}

UObject* UEditorAssetLibrary::DuplicateAsset(const FString& SourceAssetPath, const FString& DestinationAssetPath)
{
	UObject* const Asset = LoadAsset(SourceAssetPath);
	return Asset ? DuplicateLoadedAsset(Asset, DestinationAssetPath) : nullptr;
}

bool UEditorAssetLibrary::RenameLoadedAsset(UObject* SourceAsset, const FString& DestinationAssetPath)
{
	return IAssetTools::Get().RenameAssets({ EditorAssetLibrary::MakeTarget(SourceAsset, DestinationAssetPath) });
}

bool UEditorAssetLibrary::RenameAsset(const FString& SourceAssetPath, const FString& DestinationAssetPath)
{
	UObject* const Asset = LoadAsset(SourceAssetPath);
	return Asset && RenameLoadedAsset(Asset, DestinationAssetPath);
}

bool UEditorAssetLibrary::SaveLoadedAsset(UObject* AssetToSave, bool bOnlyIfIsDirty)
{
	UPackage* const Package = AssetToSave && AssetToSave->IsAsset() ? AssetToSave->GetPackage() : nullptr;
	FString FileName;
	if (!Package || !FPackageName::TryConvertLongPackageNameToFilename(
						Package->GetName(), FileName, FPackageName::GetAssetPackageExtension()))
	{
		UE_LOG(LogEditorScripting, Error, TEXT("What is to be saved is no asset, or has no place on disk."));
		return false;
	}
	FPackageName::DoesPackageExist(Package->GetName(), &FileName);
	if (bOnlyIfIsDirty && !Package->IsDirty())
	{
		return true;
	}
	FSavePackageArgs Args;
	Args.TopLevelFlags = RF_Public | RF_Standalone;
	Args.Error = GWarn;
	return UPackage::SavePackage(Package, nullptr, *FileName, Args);
}

bool UEditorAssetLibrary::SaveAsset(const FString& AssetToSave, bool bOnlyIfIsDirty)
{
	UObject* const Asset = LoadAsset(AssetToSave);
	return Asset && SaveLoadedAsset(Asset, bOnlyIfIsDirty);
}

bool UEditorAssetLibrary::DoesDirectoryExist(const FString& DirectoryPath)
{
	const FString Folder = EditorAssetLibrary::ToFolder(DirectoryPath);
	return !Folder.IsEmpty() && IFileManager::Get().DirectoryExists(*Folder);
}

bool UEditorAssetLibrary::DoesDirectoryHaveAssets(const FString& DirectoryPath, bool bRecursive)
{
	return !ListAssets(DirectoryPath, bRecursive, false).IsEmpty();
}

bool UEditorAssetLibrary::MakeDirectory(const FString& DirectoryPath)
{
	const FString Folder = EditorAssetLibrary::ToFolder(DirectoryPath);
	return !Folder.IsEmpty() && IFileManager::Get().MakeDirectory(*Folder, true);
}

TArray<FString> UEditorAssetLibrary::ListAssets(const FString& DirectoryPath, bool bRecursive, bool bIncludeFolder)
{
	TArray<FAssetData> Assets;
	const FString Root = EditorAssetLibrary::WithoutSlash(DirectoryPath);
	if (Root.Len() < NAME_SIZE)
	{
		EditorAssetLibrary::GetScannedRegistry().GetAssetsByPath(FName(*Root), Assets, bRecursive);
	}
	TArray<FString> Paths;
	TSet<FString> Folders;
	for (const FAssetData& Asset : Assets)
	{
		Paths.Add(Asset.GetObjectPathString());
		const FString Folder = Asset.PackagePath.ToString() + TEXT("/");
		if (bIncludeFolder && Folder != Root + TEXT("/"))
		{
			Folders.Add(Folder);
		}
	}
	Paths.Append(Folders.Array());
	Paths.Sort();
	return Paths;
}
