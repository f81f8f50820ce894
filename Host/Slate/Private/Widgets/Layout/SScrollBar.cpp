#include "Widgets/Layout/SScrollBar.h"

#include "Rendering/DrawElements.h"
#include "Styling/AppStyle.h"

void SScrollBar::Construct(const FArguments& InArgs)
{
	Orientation = InArgs._Orientation;
	Style = InArgs._Style != nullptr ? InArgs._Style : &FAppStyle::Get().GetWidgetStyle<FScrollBarStyle>("ScrollBar");
	OnUserScrolled = InArgs._OnUserScrolled;
}

void SScrollBar::SetState(float InOffsetFraction, float InThumbSizeFraction)
{
	OffsetFraction = FMath::Clamp(InOffsetFraction, 0.0f, 1.0f);
	ThumbSizeFraction = FMath::Clamp(InThumbSizeFraction, 0.0f, 1.0f);
}

float SScrollBar::GetTrackFraction(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) const
{
	const FVector2D Size = MyGeometry.GetLocalSize();
	const FVector2D Position = MyGeometry.AbsoluteToLocal(MouseEvent.GetScreenSpacePosition());
	const double Length = Orientation == Orient_Vertical ? Size.Y : Size.X;
	const double Place = Orientation == Orient_Vertical ? Position.Y : Position.X;
	return Length > 0.0 ? static_cast<float>(Place / Length) : 0.0f;
}

FReply SScrollBar::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (MouseEvent.GetEffectingButton() != EKeys::LeftMouseButton || !IsNeeded())
	{
		return FReply::Unhandled();
	}
	const float Place = GetTrackFraction(MyGeometry, MouseEvent);
	const bool bIsOnThumb = Place >= OffsetFraction && Place <= OffsetFraction + ThumbSizeFraction;
	// A click beside the thumb brings its middle there.
	DragGrabFraction = bIsOnThumb ? Place - OffsetFraction : ThumbSizeFraction / 2.0f;
	if (!bIsOnThumb)
	{
		OnUserScrolled.ExecuteIfBound(FMath::Clamp(Place - DragGrabFraction, 0.0f, 1.0f - ThumbSizeFraction));
	}
	return FReply::Handled().CaptureMouse(AsShared());
}

FReply SScrollBar::OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return HasMouseCapture() ? FReply::Handled().ReleaseMouseCapture() : FReply::Unhandled();
}

FReply SScrollBar::OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent)
{
	return OnMouseButtonDown(InMyGeometry, InMouseEvent);
}

FReply SScrollBar::OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (!HasMouseCapture())
	{
		return FReply::Unhandled();
	}
	const float NewOffset = GetTrackFraction(MyGeometry, MouseEvent) - DragGrabFraction;
	OnUserScrolled.ExecuteIfBound(FMath::Clamp(NewOffset, 0.0f, 1.0f - ThumbSizeFraction));
	return FReply::Handled();
}

FVector2D SScrollBar::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	return Orientation == Orient_Vertical ? FVector2D(Style->Thickness, 0.0) : FVector2D(0.0, Style->Thickness);
}

int32 SScrollBar::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	if (!IsNeeded())
	{
		return LayerId;
	}
	const FVector2D Size = AllottedGeometry.GetLocalSize();
	const bool bIsVertical = Orientation == Orient_Vertical;
	const FVector2D ThumbSize =
		bIsVertical ? FVector2D(Size.X, Size.Y * ThumbSizeFraction) : FVector2D(Size.X * ThumbSizeFraction, Size.Y);
	const FVector2D ThumbOffset =
		bIsVertical ? FVector2D(0.0, Size.Y * OffsetFraction) : FVector2D(Size.X * OffsetFraction, 0.0);
	const FSlateBrush& Brush = IsHovered() ? Style->HoveredThumbImage : Style->NormalThumbImage;
	FSlateDrawElement::MakeBox(OutDrawElements, LayerId,
		AllottedGeometry.MakeChild(ThumbSize, FSlateLayoutTransform(1.0f, ThumbOffset)), MyCullingRect, &Brush,
		InWidgetStyle.GetColorAndOpacityTint() * Brush.GetTint(InWidgetStyle));
	return LayerId;
}
