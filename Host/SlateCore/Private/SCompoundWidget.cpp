#include "Widgets/SCompoundWidget.h"

#include "Layout/LayoutUtils.h"

SCompoundWidget::SCompoundWidget() = default;

void SCompoundWidget::SetColorAndOpacity(const TAttribute<FLinearColor>& InColorAndOpacity)
{
	ColorAndOpacityAttribute.Assign(this, InColorAndOpacity);
}

void SCompoundWidget::SetForegroundColor(const TAttribute<FSlateColor>& InForegroundColor)
{
	ForegroundColorAttribute.Assign(this, InForegroundColor);
}

FVector2D SCompoundWidget::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	const TSharedRef<SWidget>& Child = ChildSlot.GetWidget();
	if (!Child->GetVisibility().TakesSpace())
	{
		return FVector2D(0.0, 0.0);
	}
	return FVector2D(Child->GetDesiredSize()) + ChildSlot.GetPadding().GetDesiredSize();
}

void SCompoundWidget::OnArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const
{
	ArrangeSingleChild(AllottedGeometry, ArrangedChildren, ChildSlot.GetWidget(), ChildSlot.GetHorizontalAlignment(),
		ChildSlot.GetVerticalAlignment(), ChildSlot.GetPadding());
}

int32 SCompoundWidget::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry,
	const FSlateRect& MyCullingRect, FSlateWindowElementList& OutDrawElements, int32 LayerId,
	const FWidgetStyle& InWidgetStyle, bool bParentEnabled) const
{
	FWidgetStyle Style = InWidgetStyle;
	Style.BlendColorAndOpacityTint(GetColorAndOpacity());
	Style.SetForegroundColor(GetForegroundColor().GetColor(InWidgetStyle));
	return PaintChildren(Args, AllottedGeometry, MyCullingRect, OutDrawElements, LayerId, Style, bParentEnabled);
}
