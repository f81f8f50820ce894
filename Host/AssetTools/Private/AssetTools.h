#pragma once

#include "IAssetTools.h"
#include "AssetTools.generated.h"

class UPackage;

UCLASS(Transient)
class UAssetToolsImpl : public UObject, public IAssetTools
{
	GENERATED_BODY()

public:
	UObject* CreateAsset(const FString& AssetName, const FString& PackagePath, UClass* AssetClass, UFactory* Factory,
		FName CallingContext) override;
	UObject* DuplicateAsset(const FString& AssetName, const FString& PackagePath, UObject* OriginalObject) override;
	bool RenameAssets(const TArray<FAssetRenameData>& AssetsAndNames) override;
	void CreateUniqueAssetName(const FString& InBasePackageName, const FString& InSuffix, FString& OutPackageName,
		FString& OutAssetName) override;

private:
	/** The package for a new asset; null, with the reason in the log, when there can be none. */
	static UPackage* MakePackage(const FString& AssetName, const FString& PackagePath);
	static bool RenameAsset(const FAssetRenameData& Data);
};
