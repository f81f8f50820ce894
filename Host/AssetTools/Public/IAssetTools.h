#pragma once

#include "AssetRenameData.h"
#include "CoreMinimal.h"
#include "UObject/Interface.h"
#include "UObject/ScriptInterface.h"
#include "IAssetTools.generated.h"

class UFactory;

UINTERFACE(BlueprintType, meta = (CannotImplementInterfaceInBlueprint))
class UAssetTools : public UInterface
{
	GENERATED_BODY()
};

/**
 * Makes, copies and moves assets. Nothing is saved by making or copying one.
 *
 * Where the user would be asked and nobody is there to answer, the answer is the one that changes nothing: a name that
 * is taken or impossible gives null, and the log says why.
 */
class IAssetTools
{
	GENERATED_BODY()

public:
	/** Loads the module if need be. */
	static IAssetTools& Get();

	/**
	 * Makes an asset with a factory. The package becomes dirty.
	 *
	 * @param PackagePath  "/Game/Folder"
	 * @param AssetClass   the factory's own class or a child of it; null means the factory's
	 */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset Tools")
	virtual UObject* CreateAsset(const FString& AssetName, const FString& PackagePath, UClass* AssetClass,
		UFactory* Factory, FName CallingContext = NAME_None) = 0;

	/** Makes a copy of an asset. The package becomes dirty. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset Tools")
	virtual UObject* DuplicateAsset(const FString& AssetName, const FString& PackagePath, UObject* OriginalObject) = 0;

	/**
	 * Moves assets to other names or folders, together with their files; what refers to them is saved again.
	 *
	 * @return whether all of them were moved
	 */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset Tools")
	virtual bool RenameAssets(const TArray<FAssetRenameData>& AssetsAndNames) = 0;

	/** A name that is free: the base name with the suffix and, if need be, with a number. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset Tools")
	virtual void CreateUniqueAssetName(
		const FString& InBasePackageName, const FString& InSuffix, FString& OutPackageName, FString& OutAssetName) = 0;
};

/** The asset tools for scripts. */
UCLASS(BlueprintType)
class UAssetToolsHelpers : public UObject
{
	GENERATED_BODY()

public:
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Asset Tools")
	static TScriptInterface<IAssetTools> GetAssetTools();
};
