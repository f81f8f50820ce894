#include "Widgets/Images/SImage.h"

#include "Rendering/DrawElements.h"

void SImage::Construct(const FArguments& InArgs)
{
	ImageAttribute.Assign(this, InArgs._Image);
	ColorAttribute.Assign(this, InArgs._ColorAndOpacity);
	SizeOverrideAttribute.Assign(this, InArgs._DesiredSizeOverride);
	OnMouseButtonDownHandler = InArgs._OnMouseButtonDown;
}

FReply SImage::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return OnMouseButtonDownHandler.IsBound() ? OnMouseButtonDownHandler.Execute(MyGeometry, MouseEvent)
											  : FReply::Unhandled();
}

FVector2D SImage::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	if (SizeOverrideAttribute.Get().IsSet())
	{
		return SizeOverrideAttribute.Get().GetValue();
	}
	return GetImage() != nullptr ? FVector2D(GetImage()->GetImageSize()) : FVector2D(0.0, 0.0);
}

int32 SImage::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	if (GetImage() != nullptr)
	{
		FSlateDrawElement::MakeBox(OutDrawElements, LayerId, AllottedGeometry, MyCullingRect, GetImage(),
			InWidgetStyle.GetColorAndOpacityTint() * ColorAttribute.Get().GetColor(InWidgetStyle) *
				GetImage()->GetTint(InWidgetStyle));
	}
	return LayerId;
}
