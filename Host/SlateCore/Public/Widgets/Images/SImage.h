#pragma once

#include "CoreMinimal.h"
#include "Styling/SlateBrush.h"
#include "Styling/SlateColor.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SLeafWidget.h"

/** Shows a brush. The brush is not copied and has to outlive the image; null shows nothing. */
class SImage : public SLeafWidget
{
public:
	SLATE_BEGIN_ARGS(SImage) {}
	SLATE_ATTRIBUTE(const FSlateBrush*, Image)
	SLATE_ATTRIBUTE(FSlateColor, ColorAndOpacity)
	SLATE_ATTRIBUTE(TOptional<FVector2D>, DesiredSizeOverride)
	SLATE_EVENT(FPointerEventHandler, OnMouseButtonDown)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
	void SetColorAndOpacity(TAttribute<FSlateColor> InColor) { ColorAttribute.Assign(this, InColor); }
	const FSlateBrush* GetImage() const { return ImageAttribute.Get(); }

	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override;

private:
	TCachedAttribute<const FSlateBrush*> ImageAttribute{ EInvalidateWidgetReason::Layout, nullptr };
	TCachedAttribute<FSlateColor> ColorAttribute{ EInvalidateWidgetReason::Paint, FSlateColor(FLinearColor::White) };
	TCachedAttribute<TOptional<FVector2D>> SizeOverrideAttribute{ EInvalidateWidgetReason::Layout };
	FPointerEventHandler OnMouseButtonDownHandler;
};
