#pragma once

#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"
#include "Input/DragAndDrop.h"

/** Assets, or folders of them, on their way out of a content browser. */
class FAssetDragDropOp : public FDragDropOperation
{
public:
	DRAG_DROP_OPERATOR_TYPE(FAssetDragDropOp, FDragDropOperation)

	static TSharedRef<FAssetDragDropOp> New(TArray<FAssetData> InAssetData);
	/** Folders, as paths of packages. */
	static TSharedRef<FAssetDragDropOp> New(TArray<FString> InAssetPaths);

	bool HasAssets() const { return !AssetData.IsEmpty(); }
	const TArray<FAssetData>& GetAssets() const { return AssetData; }
	/** Of folders. */
	const TArray<FString>& GetAssetPaths() const { return AssetPaths; }

	virtual TSharedPtr<SWidget> GetDefaultDecorator() const override;

private:
	TArray<FAssetData> AssetData;
	TArray<FString> AssetPaths;
};
