#include "Widgets/Views/STableRow.h"

void STableRowBase::ConstructRow(
	const TSharedRef<STableViewBase>& InOwner, const FMargin& Padding, TSharedRef<SWidget> Content)
{
	Owner = InOwner;
	// clang-format off
	SBorder::Construct(SBorder::FArguments()
		.VAlign(VAlign_Center)
		.Padding(TAttribute<FMargin>(Padding))
		[
			Content
		]);
	// clang-format on
}

FReply STableRowBase::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	const TSharedPtr<STableViewBase> List = Owner.Pin();
	if (!DragDetected.IsBound() || !List.IsValid())
	{
		return FReply::Unhandled();
	}
	FReply Reply = List->OnMouseButtonDown(List->GetCachedGeometry(), MouseEvent);
	return Reply.IsEventHandled() ? Reply.DetectDrag(SharedThis(this), EKeys::LeftMouseButton) : Reply;
}

FReply STableRowBase::OnDragDetected(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return DragDetected.IsBound() ? DragDetected.Execute(MyGeometry, MouseEvent) : FReply::Unhandled();
}

const FSlateBrush* STableRowBase::GetBrushToPaint(bool bEnabled) const
{
	const TSharedPtr<STableViewBase> List = Owner.Pin();
	if (List.IsValid() && List->IsRowSelected(*this))
	{
		return FAppStyle::GetBrush(List->HasKeyboardFocus() ? "TableView.Selected" : "TableView.SelectedInactive");
	}
	return IsHovered() ? FAppStyle::GetBrush("TableView.Hovered") : FAppStyle::GetNoBrush();
}
