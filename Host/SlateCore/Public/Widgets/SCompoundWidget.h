#pragma once

#include "CoreMinimal.h"
#include "Layout/Children.h"
#include "Styling/SlateColor.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SWidget.h"

/** A widget put together from others: the base of most widgets that are written outside Slate. */
class SCompoundWidget : public SWidget
{
public:
	virtual FChildren* GetChildren() override { return &ChildSlot; }

	/** Tints what is inside. */
	void SetColorAndOpacity(const TAttribute<FLinearColor>& InColorAndOpacity);
	/** The colour of everything inside that uses the foreground. */
	void SetForegroundColor(const TAttribute<FSlateColor>& InForegroundColor);
	const FLinearColor& GetColorAndOpacity() const { return ColorAndOpacityAttribute.Get(); }
	virtual FSlateColor GetForegroundColor() const { return ForegroundColorAttribute.Get(); }

protected:
	SCompoundWidget();

	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual void OnArrangeChildren(
		const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const override;
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override;

	FCompoundWidgetOneChildSlot ChildSlot{ this };

private:
	TCachedAttribute<FLinearColor> ColorAndOpacityAttribute{ EInvalidateWidgetReason::Paint, FLinearColor::White };
	TCachedAttribute<FSlateColor> ForegroundColorAttribute{ EInvalidateWidgetReason::Paint,
		FSlateColor::UseForeground() };
};
