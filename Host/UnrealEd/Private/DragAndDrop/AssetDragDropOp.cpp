#include "DragAndDrop/AssetDragDropOp.h"

#include "Styling/AppStyle.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Text/STextBlock.h"

TSharedRef<FAssetDragDropOp> FAssetDragDropOp::New(TArray<FAssetData> InAssetData)
{
	const TSharedRef<FAssetDragDropOp> Operation = MakeShared<FAssetDragDropOp>();
	Operation->AssetData = MoveTemp(InAssetData);
	return Operation;
}

TSharedRef<FAssetDragDropOp> FAssetDragDropOp::New(TArray<FString> InAssetPaths)
{
	const TSharedRef<FAssetDragDropOp> Operation = MakeShared<FAssetDragDropOp>();
	Operation->AssetPaths = MoveTemp(InAssetPaths);
	return Operation;
}

TSharedPtr<SWidget> FAssetDragDropOp::GetDefaultDecorator() const
{
	const FString First = HasAssets() ? AssetData[0].AssetName.ToString() : AssetPaths[0];
	const int32 NumOthers = AssetData.Num() + AssetPaths.Num() - 1;
	const FString Label = NumOthers > 0 ? FString::Printf(TEXT("%s (+%d)"), *First, NumOthers) : First;
	// clang-format off
	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("ToolTip.Background"))
		.Padding(8.0f, 4.0f)
		[
			SNew(STextBlock).Text(FText::FromString(Label))
		];
	// clang-format on
}
