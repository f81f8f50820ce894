#include "Widgets/Views/STableViewBase.h"

#include "Widgets/Layout/SListPanel.h"
#include "Widgets/Layout/SScrollBar.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Views/STableRow.h"

namespace TableViewBase
{
constexpr double WheelStep = 48.0; // Slate units

/** The items that a key goes down by, a negative number up. */
int32 GetStep(const FKey& Key, int32 PageSize, int32 NumItems)
{
	const struct
	{
		FKey Key;
		int32 Step;
	} Steps[] = { { EKeys::Up, -1 }, { EKeys::Down, 1 }, { EKeys::PageUp, -PageSize }, { EKeys::PageDown, PageSize },
		{ EKeys::Home, -NumItems }, { EKeys::End, NumItems } };
	for (const auto& Each : Steps)
	{
		if (Each.Key == Key)
		{
			return Each.Step;
		}
	}
	return 0;
}
}

void SListPanel::ShowRows(const TArray<TSharedRef<SWidget>>& Widgets)
{
	Children.Empty();
	for (const TSharedRef<SWidget>& Widget : Widgets)
	{
		FSlot::FSlotArguments Arguments(MakeUnique<FSlot>());
		Arguments.AttachWidget(Widget);
		Children.AddSlot(MoveTemp(Arguments));
		// It is painted in this very frame.
		Widget->SlatePrepass();
	}
}

FVector2D SListPanel::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	double Width = 0.0;
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		Width = FMath::Max(Width, FVector2D(Children[Index].GetWidget()->GetDesiredSize()).X);
	}
	return FVector2D(Width, static_cast<double>(NumItems) * RowHeight);
}

void SListPanel::OnArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const
{
	const FVector2D RowSize(FVector2D(AllottedGeometry.GetLocalSize()).X, RowHeight);
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		const FVector2D Place(0.0, FirstRowPlace + static_cast<double>(Index) * RowHeight);
		ArrangedChildren.AddWidget(FArrangedWidget(
			Children[Index].GetWidget(), AllottedGeometry.MakeChild(RowSize, FSlateLayoutTransform(Place))));
	}
}

void STableViewBase::ConstructBase(float InRowHeight, const FOnKeyDown& InKeyDownHandler)
{
	RowHeight = InRowHeight;
	KeyDownHandler = InKeyDownHandler;
	// clang-format off
	ChildSlot
	[
		SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().FillWidth(1.0f)
		[
			SAssignNew(Panel, SListPanel).RowHeight(RowHeight)
		]
		+ SHorizontalBox::Slot().AutoWidth()
		[
			SAssignNew(ScrollBar, SScrollBar).OnUserScrolled(this, &STableViewBase::OnScrollBarMoved)
		]
	];
	// clang-format on
}

void STableViewBase::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	ViewHeight = FVector2D(AllottedGeometry.GetLocalSize()).Y;
	if (IndexToReveal != INDEX_NONE)
	{
		Reveal(IndexToReveal);
		IndexToReveal = INDEX_NONE;
	}
	Offset = FMath::Clamp(Offset, 0.0, GetLongestOffset());
	UpdateRows();
	Panel->SetFirstRowPlace(static_cast<double>(FirstRow) * RowHeight - Offset);
	const double Whole = FMath::Max(static_cast<double>(GetNumItemsBeingObserved()) * RowHeight, ViewHeight);
	ScrollBar->SetState(Whole > 0.0 ? static_cast<float>(Offset / Whole) : 0.0f,
		Whole > 0.0 ? static_cast<float>(ViewHeight / Whole) : 1.0f);
}

void STableViewBase::UpdateRows()
{
	const int32 NumItems = GetNumItemsBeingObserved();
	const int32 First = FMath::Min(static_cast<int32>(Offset / RowHeight), NumItems);
	const int32 End = FMath::Min(static_cast<int32>((Offset + ViewHeight) / RowHeight) + 1, NumItems);
	if (!bRefreshes && First == FirstRow && End - First == Rows.Num())
	{
		return;
	}
	TArray<TSharedRef<ITableRow>> NewRows;
	TArray<TSharedRef<SWidget>> Widgets;
	for (int32 Index = First; Index < End; ++Index)
	{
		const bool bKept = !bRefreshes && Rows.IsValidIndex(Index - FirstRow);
		NewRows.Add(bKept ? Rows[Index - FirstRow] : MakeRow(Index));
		Widgets.Add(NewRows.Last()->AsWidget());
	}
	Rows = MoveTemp(NewRows);
	FirstRow = First;
	bRefreshes = false;
	Panel->SetNumItems(NumItems);
	Panel->ShowRows(Widgets);
}

void STableViewBase::Reveal(int32 Index)
{
	const double Top = static_cast<double>(Index) * RowHeight;
	Offset = FMath::Clamp(Offset, Top + RowHeight - ViewHeight, Top);
}

double STableViewBase::GetLongestOffset() const
{
	return FMath::Max(static_cast<double>(GetNumItemsBeingObserved()) * RowHeight - ViewHeight, 0.0);
}

void STableViewBase::ScrollBy(double Distance)
{
	Offset = FMath::Clamp(Offset + Distance, 0.0, GetLongestOffset());
}

void STableViewBase::OnScrollBarMoved(float OffsetFraction)
{
	ScrollBy(static_cast<double>(OffsetFraction) * GetNumItemsBeingObserved() * RowHeight - Offset);
}

int32 STableViewBase::GetIndexAt(const FPointerEvent& PointerEvent) const
{
	const FVector2D Place = Panel->GetCachedGeometry().AbsoluteToLocal(PointerEvent.GetScreenSpacePosition());
	const int32 Index = static_cast<int32>((Place.Y + Offset) / RowHeight);
	return Place.Y >= 0.0 && Index < GetNumItemsBeingObserved() ? Index : INDEX_NONE;
}

FReply STableViewBase::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	const int32 Index = GetIndexAt(MouseEvent);
	if (MouseEvent.GetEffectingButton() != EKeys::LeftMouseButton)
	{
		return FReply::Unhandled();
	}
	if (Index != INDEX_NONE)
	{
		SelectIndex(Index, ESelectInfo::OnMouseClick);
	}
	return FReply::Handled().SetUserFocus(AsShared(), EFocusCause::Mouse);
}

FReply STableViewBase::OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent)
{
	const int32 Index = GetIndexAt(InMouseEvent);
	if (InMouseEvent.GetEffectingButton() != EKeys::LeftMouseButton || Index == INDEX_NONE)
	{
		return FReply::Unhandled();
	}
	SelectIndex(Index, ESelectInfo::OnMouseClick);
	OnIndexDoubleClicked(Index);
	return FReply::Handled();
}

FReply STableViewBase::OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	ScrollBy(-static_cast<double>(MouseEvent.GetWheelDelta()) * TableViewBase::WheelStep);
	return FReply::Handled();
}

FReply STableViewBase::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const FReply Reply =
		KeyDownHandler.IsBound() ? KeyDownHandler.Execute(MyGeometry, InKeyEvent) : FReply::Unhandled();
	if (Reply.IsEventHandled())
	{
		return Reply;
	}
	return MoveSelection(InKeyEvent.GetKey()) ? FReply::Handled() : SCompoundWidget::OnKeyDown(MyGeometry, InKeyEvent);
}

bool STableViewBase::MoveSelection(const FKey& Key)
{
	const int32 NumItems = GetNumItemsBeingObserved();
	const int32 PageSize = FMath::Max(static_cast<int32>(ViewHeight / RowHeight) - 1, 1);
	const int32 Step = TableViewBase::GetStep(Key, PageSize, NumItems);
	if (Step == 0 || NumItems == 0)
	{
		return false;
	}
	const int32 Selected = GetSelectedIndex();
	// Without a selection the first key only shows where one is.
	const int32 Wanted = Selected == INDEX_NONE ? (Step == NumItems ? NumItems - 1 : 0) : Selected + Step;
	const int32 Index = FMath::Clamp(Wanted, 0, NumItems - 1);
	SelectIndex(Index, ESelectInfo::OnNavigation);
	ScrollIntoView(Index);
	return true;
}

bool STableViewBase::IsRowSelected(const ITableRow& Row) const
{
	const int32 Selected = GetSelectedIndex();
	return Rows.IsValidIndex(Selected - FirstRow) && &Rows[Selected - FirstRow].Get() == &Row;
}
