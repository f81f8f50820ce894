#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/Views/STableRow.h"
#include "Widgets/Views/STableViewBase.h"

/**
 * A list of items, of which at most one is selected. ItemType is a shared pointer.
 *
 * The array of items belongs to the caller and has to outlive the list. After each change of it the list is told, by
 * RequestListRefresh.
 */
template <typename ItemType>
class SListView : public STableViewBase
{
public:
	using FOnGenerateRow = typename TSlateDelegates<ItemType>::FOnGenerateRow;
	using FOnSelectionChanged = typename TSlateDelegates<ItemType>::FOnSelectionChanged;
	using FOnMouseButtonDoubleClick = typename TSlateDelegates<ItemType>::FOnMouseButtonDoubleClick;

	SLATE_BEGIN_ARGS(SListView)
		: _ListItemsSource(nullptr)
		, _ItemHeight(20.0f)
	{
		this->_Clipping = EWidgetClipping::ClipToBounds;
	}
	SLATE_EVENT(FOnGenerateRow, OnGenerateRow)
	SLATE_ARGUMENT(const TArray<ItemType>*, ListItemsSource)
	/** In Slate units, of every row. */
	SLATE_ARGUMENT(float, ItemHeight)
	SLATE_EVENT(FOnSelectionChanged, OnSelectionChanged)
	SLATE_EVENT(FOnMouseButtonDoubleClick, OnMouseButtonDoubleClick)
	/** Asked before the list itself. */
	SLATE_EVENT(FOnKeyDown, OnKeyDownHandler)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		ItemsSource = InArgs._ListItemsSource;
		GenerateRow = InArgs._OnGenerateRow;
		SelectionChanged = InArgs._OnSelectionChanged;
		DoubleClicked = InArgs._OnMouseButtonDoubleClick;
		ConstructBase(InArgs._ItemHeight, InArgs._OnKeyDownHandler);
	}

	/** Null for none. */
	void SetSelection(ItemType Item, ESelectInfo::Type SelectInfo = ESelectInfo::Direct)
	{
		if (SelectedItem != Item)
		{
			SelectedItem = Item;
			SelectionChanged.ExecuteIfBound(Item, SelectInfo);
		}
	}
	void ClearSelection() { SetSelection(nullptr); }
	/** Those that are selected: one or none. */
	TArray<ItemType> GetSelectedItems() const
	{
		return SelectedItem.IsValid() ? TArray<ItemType>{ SelectedItem } : TArray<ItemType>();
	}
	bool IsItemSelected(const ItemType& Item) const { return SelectedItem.IsValid() && SelectedItem == Item; }
	void RequestScrollIntoView(ItemType Item) { ScrollIntoView(ItemsSource->IndexOfByKey(Item)); }

protected:
	virtual int32 GetNumItemsBeingObserved() const override { return ItemsSource->Num(); }
	virtual TSharedRef<ITableRow> MakeRow(int32 Index) override
	{
		return GenerateRow.Execute((*ItemsSource)[Index], SharedThis(this));
	}
	virtual int32 GetSelectedIndex() const override
	{
		return SelectedItem.IsValid() ? ItemsSource->IndexOfByKey(SelectedItem) : INDEX_NONE;
	}
	virtual void SelectIndex(int32 Index, ESelectInfo::Type SelectInfo) override
	{
		SetSelection((*ItemsSource)[Index], SelectInfo);
	}
	virtual void OnIndexDoubleClicked(int32 Index) override
	{
		// By value: what is done may change the items.
		const ItemType Item = (*ItemsSource)[Index];
		DoubleClicked.ExecuteIfBound(Item);
	}

private:
	const TArray<ItemType>* ItemsSource = nullptr;
	FOnGenerateRow GenerateRow;
	FOnSelectionChanged SelectionChanged;
	FOnMouseButtonDoubleClick DoubleClicked;
	ItemType SelectedItem;
};
