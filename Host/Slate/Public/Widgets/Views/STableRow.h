#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/AppStyle.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Views/STableViewBase.h"

/** A row of a list. */
class ITableRow
{
public:
	virtual ~ITableRow() = default;
	virtual TSharedRef<SWidget> AsWidget() = 0;
};

/** What all rows are, whatever they show: a strip that tells whether it is selected. */
class STableRowBase : public SBorder, public ITableRow
{
public:
	virtual TSharedRef<SWidget> AsWidget() override { return AsShared(); }
	/** The list selects the row; then it may be dragged. */
	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnDragDetected(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;

protected:
	void ConstructRow(const TSharedRef<STableViewBase>& InOwner, const FMargin& Padding, TSharedRef<SWidget> Content);
	virtual const FSlateBrush* GetBrushToPaint(bool bEnabled) const override;

	FOnDragDetected DragDetected;

private:
	TWeakPtr<STableViewBase> Owner;
};

/** The row of an item, around whatever widget shows it. */
template <typename ItemType>
class STableRow : public STableRowBase
{
public:
	SLATE_BEGIN_ARGS(STableRow)
		: _Padding(FMargin(6.0f, 0.0f))
	{
	}
	SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_ARGUMENT(FMargin, Padding)
	/** Answers with what is dragged. */
	SLATE_EVENT(FOnDragDetected, OnDragDetected)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, const TSharedRef<STableViewBase>& InOwnerTableView)
	{
		DragDetected = InArgs._OnDragDetected;
		ConstructRow(InOwnerTableView, InArgs._Padding, InArgs._Content.Widget);
	}
};
