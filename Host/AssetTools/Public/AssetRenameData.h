#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "UObject/SoftObjectPath.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "AssetRenameData.generated.h"

/** An asset and where it shall be. */
USTRUCT(BlueprintType)
struct FAssetRenameData
{
	GENERATED_BODY()

	FAssetRenameData() = default;
	FAssetRenameData(const TWeakObjectPtr<UObject>& InAsset, const FString& InNewPackagePath, const FString& InNewName)
		: Asset(InAsset)
		, NewPackagePath(InNewPackagePath)
		, NewName(InNewName)
	{
	}

	UPROPERTY(BlueprintReadWrite, Category = "Asset Rename Data")
	TWeakObjectPtr<UObject> Asset;

	/** "/Game/Folder" */
	UPROPERTY(BlueprintReadWrite, Category = "Asset Rename Data")
	FString NewPackagePath;

	UPROPERTY(BlueprintReadWrite, Category = "Asset Rename Data")
	FString NewName;
};
