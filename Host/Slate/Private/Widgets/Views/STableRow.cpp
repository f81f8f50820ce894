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

const FSlateBrush* STableRowBase::GetBrushToPaint(bool bEnabled) const
{
	const TSharedPtr<STableViewBase> List = Owner.Pin();
	if (List.IsValid() && List->IsRowSelected(*this))
	{
		return FAppStyle::GetBrush(List->HasKeyboardFocus() ? "TableView.Selected" : "TableView.SelectedInactive");
	}
	return IsHovered() ? FAppStyle::GetBrush("TableView.Hovered") : FAppStyle::GetNoBrush();
}
