#pragma once

#include "CoreMinimal.h"
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

protected:
	void ConstructRow(const TSharedRef<STableViewBase>& InOwner, const FMargin& Padding, TSharedRef<SWidget> Content);
	virtual const FSlateBrush* GetBrushToPaint(bool bEnabled) const override;

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
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, const TSharedRef<STableViewBase>& InOwnerTableView)
	{
		ConstructRow(InOwnerTableView, InArgs._Padding, InArgs._Content.Widget);
	}
};
