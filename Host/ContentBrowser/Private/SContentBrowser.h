#pragma once

#include "AssetList.h"
#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/Views/SListView.h"

/** The project's assets with a search box. A double click or Enter opens an asset. */
class SContentBrowser : public SCompoundWidget
{
public:
	using FItem = FAssetList::FItem;

	SLATE_BEGIN_ARGS(SContentBrowser) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	void GetSelectedAssets(TArray<FAssetData>& OutAssets) const;

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;

private:
	TSharedRef<ITableRow> MakeRow(FItem Item, const TSharedRef<STableViewBase>& Owner);
	FReply OnListKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent);
	/** From the search box into the list. */
	FReply OnSearchKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent);
	void Open(FItem Item);
	/** One that Unreal Editor saved has a path as well, and nothing else that could be dragged. */
	FReply OnRowDragged(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent, FItem Item) const;
	FText GetStatus() const;

	FAssetList Assets;
	TSharedPtr<SListView<FItem>> List;
	FText Complaint; // why the last asset was not opened
};
