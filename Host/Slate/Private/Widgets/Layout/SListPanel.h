#pragma once

#include "CoreMinimal.h"
#include "Layout/Children.h"
#include "Widgets/SPanel.h"

/** Rows of one height, one below the other, the first of them wherever the list has scrolled it to. */
class SListPanel : public SPanel
{
public:
	class FSlot : public TBasicLayoutWidgetSlot<FSlot>
	{
	};

	SLATE_BEGIN_ARGS(SListPanel) { _Visibility = EVisibility::SelfHitTestInvisible; }
	SLATE_ARGUMENT(float, RowHeight)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) { RowHeight = InArgs._RowHeight; }

	void ShowRows(const TArray<TSharedRef<SWidget>>& Widgets);
	/** Of the first row's upper edge, in Slate units below the panel's. */
	void SetFirstRowPlace(double Place) { FirstRowPlace = Place; }
	void SetNumItems(int32 InNumItems) { NumItems = InNumItems; }

	virtual FChildren* GetChildren() override { return &Children; }

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual void OnArrangeChildren(
		const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const override;

private:
	TPanelChildren<FSlot> Children{ this };
	float RowHeight = 1.0f;
	double FirstRowPlace = 0.0;
	int32 NumItems = 0;
};
