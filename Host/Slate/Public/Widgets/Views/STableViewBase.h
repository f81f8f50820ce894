#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Widgets/SCompoundWidget.h"

class ITableRow;
class SListPanel;
class SScrollBar;

/**
 * A column of rows, all of one height. Only those in view exist: twenty thousand items cost as much as forty.
 *
 * It knows items by their places alone; which items there are, and what a row shows, its derived class says.
 */
class STableViewBase : public SCompoundWidget
{
public:
	/** The items are others, or have another order: what is in view is rebuilt in the next frame. */
	void RequestListRefresh() { bRefreshes = true; }
	/** The items above the view, in rows; with a fraction. */
	double GetScrollOffset() const { return Offset / RowHeight; }
	void ScrollToBottom() { Offset = GetLongestOffset(); }
	/** How many rows there are just now. */
	int32 GetNumGeneratedChildren() const { return Rows.Num(); }

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;
	virtual bool SupportsKeyboardFocus() const override { return true; }
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;
	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent) override;
	virtual FReply OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;

	// For rows.
	bool IsRowSelected(const ITableRow& Row) const;

protected:
	void ConstructBase(float InRowHeight, const FOnKeyDown& InKeyDownHandler);

	virtual int32 GetNumItemsBeingObserved() const = 0;
	virtual TSharedRef<ITableRow> MakeRow(int32 Index) = 0;
	/** INDEX_NONE when no item is selected. */
	virtual int32 GetSelectedIndex() const = 0;
	virtual void SelectIndex(int32 Index, ESelectInfo::Type SelectInfo) = 0;
	virtual void OnIndexDoubleClicked(int32 Index) = 0;

	/** Before the next frame is painted, so that items may be added first. */
	void ScrollIntoView(int32 Index) { IndexToReveal = Index; }

private:
	/** Makes the rows that have come into view, and lets go of those that have left it. */
	void UpdateRows();
	void Reveal(int32 Index);
	double GetLongestOffset() const;
	void ScrollBy(double Distance);
	void OnScrollBarMoved(float OffsetFraction);
	/** INDEX_NONE below the last item. */
	int32 GetIndexAt(const FPointerEvent& PointerEvent) const;
	bool MoveSelection(const FKey& Key);

	TSharedPtr<SListPanel> Panel;
	TSharedPtr<SScrollBar> ScrollBar;
	FOnKeyDown KeyDownHandler;
	TArray<TSharedRef<ITableRow>> Rows; // of the items from FirstRow on
	int32 FirstRow = 0;
	int32 IndexToReveal = INDEX_NONE;
	float RowHeight = 1.0f; // Slate units
	double Offset = 0.0;    // Slate units
	double ViewHeight = 0.0;
	bool bRefreshes = true;
};
