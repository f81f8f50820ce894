#pragma once

#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"
#include "Kismet/BlueprintFunctionLibrary.h"
#include "EditorAssetLibrary.generated.h"

/**
 * What scripts do with assets. An asset's path is "/Game/Folder/Asset", "/Game/Folder/Asset.Asset" or
 * "Class'/Game/Folder/Asset.Asset'"; a folder's is "/Game/Folder", with or without a slash at the end.
 *
 * What cannot be done gives false, nothing or an empty list, and the log says why.
 */
UCLASS()
class UEditorAssetLibrary : public UBlueprintFunctionLibrary
{
	GENERATED_BODY()

public:
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static UObject* LoadAsset(const FString& AssetPath);

	/** The class that a Blueprint makes. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static UClass* LoadBlueprintClass(const FString& AssetPath);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static FString GetPathNameForLoadedAsset(UObject* LoadedAsset);

	/** Without loading it. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static FAssetData FindAssetData(const FString& AssetPath);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static bool DoesAssetExist(const FString& AssetPath);

	/** The names of the packages that refer to the asset's. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static TArray<FString> FindPackageReferencersForAsset(const FString& AssetPath, bool bLoadAssetsToConfirm = false);

	/** Deletes the asset and its file, whatever refers to it. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static bool DeleteLoadedAsset(UObject* AssetToDelete);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static bool DeleteAsset(const FString& AssetPathToDelete);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static UObject* DuplicateLoadedAsset(UObject* SourceAsset, const FString& DestinationAssetPath);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static UObject* DuplicateAsset(const FString& SourceAssetPath, const FString& DestinationAssetPath);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static bool RenameLoadedAsset(UObject* SourceAsset, const FString& DestinationAssetPath);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static bool RenameAsset(const FString& SourceAssetPath, const FString& DestinationAssetPath);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static bool SaveLoadedAsset(UObject* AssetToSave, bool bOnlyIfIsDirty = true);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static bool SaveAsset(const FString& AssetToSave, bool bOnlyIfIsDirty = true);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static bool DoesDirectoryExist(const FString& DirectoryPath);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static bool DoesDirectoryHaveAssets(const FString& DirectoryPath, bool bRecursive = true);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static bool MakeDirectory(const FString& DirectoryPath);

	/** The paths of the assets in a folder, in alphabetical order; folders end in a slash. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset")
	static TArray<FString> ListAssets(
		const FString& DirectoryPath, bool bRecursive = true, bool bIncludeFolder = false);
};
