#include "Widgets/Layout/SBorder.h"

#include "Rendering/DrawElements.h"
#include "Widgets/Layout/SSeparator.h"

void SBorder::Construct(const FArguments& InArgs)
{
	BorderImage.Assign(this, InArgs._BorderImage);
	BorderBackgroundColor.Assign(this, InArgs._BorderBackgroundColor);
	SetColorAndOpacity(InArgs._ColorAndOpacity);
	SetForegroundColor(InArgs._ForegroundColor);
	MouseButtonDownHandler = InArgs._OnMouseButtonDown;
	MouseButtonUpHandler = InArgs._OnMouseButtonUp;
	ChildSlot.HAlign(InArgs._HAlign).VAlign(InArgs._VAlign).Padding(InArgs._Padding)[InArgs._Content.Widget];
}

FReply SBorder::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return MouseButtonDownHandler.IsBound() ? MouseButtonDownHandler.Execute(MyGeometry, MouseEvent)
											: FReply::Unhandled();
}

FReply SBorder::OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return MouseButtonUpHandler.IsBound() ? MouseButtonUpHandler.Execute(MyGeometry, MouseEvent) : FReply::Unhandled();
}

int32 SBorder::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	const FSlateBrush* const Brush = GetBrushToPaint(ShouldBeEnabled(bParentEnabled));
	if (Brush != nullptr)
	{
		FSlateDrawElement::MakeBox(OutDrawElements, LayerId, AllottedGeometry, MyCullingRect, Brush,
			InWidgetStyle.GetColorAndOpacityTint() * BorderBackgroundColor.Get().GetColor(InWidgetStyle) *
				Brush->GetTint(InWidgetStyle));
	}
	return SCompoundWidget::OnPaint(
		Args, AllottedGeometry, MyCullingRect, OutDrawElements, LayerId + 1, InWidgetStyle, bParentEnabled);
}

void SSeparator::Construct(const FArguments& InArgs)
{
	Orientation = InArgs._Orientation;
	Thickness = InArgs._Thickness;
	SBorder::Construct(SBorder::FArguments().BorderImage(InArgs._SeparatorImage).Padding(0.0f));
	SetBorderBackgroundColor(InArgs._ColorAndOpacity);
}

FVector2D SSeparator::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	return Orientation == Orient_Horizontal ? FVector2D(0.0, Thickness) : FVector2D(Thickness, 0.0);
}
