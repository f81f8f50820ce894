#pragma once

#include "CoreMinimal.h"
#include "Layout/Children.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SPanel.h"

/** Widgets one upon another, the last in front. */
class SOverlay : public SPanel
{
public:
	class FOverlaySlot : public TBasicLayoutWidgetSlot<FOverlaySlot>
	{
	public:
		int32 ZOrder = 0;
	};
	using FScopedWidgetSlotArguments = TScopedWidgetSlotArguments<FOverlaySlot>;

	SLATE_BEGIN_ARGS(SOverlay) { _Visibility = EVisibility::SelfHitTestInvisible; }
	SLATE_SLOT_ARGUMENT(SOverlay::FOverlaySlot, Slots)
	SLATE_END_ARGS()

	static FOverlaySlot::FSlotArguments Slot() { return FOverlaySlot::FSlotArguments(MakeUnique<FOverlaySlot>()); }
	/** @param ZOrder  what lies in front: the greater one, of two equal ones the later; INDEX_NONE: in front of all */
	FScopedWidgetSlotArguments AddSlot(int32 ZOrder = INDEX_NONE);
	/** True if the widget was there. */
	bool RemoveSlot(TSharedRef<SWidget> Widget) { return Children.Remove(Widget) != INDEX_NONE; }
	void ClearChildren() { Children.Empty(); }

	void Construct(const FArguments& InArgs);
	virtual FChildren* GetChildren() override { return &Children; }

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual void OnArrangeChildren(
		const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const override;
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override;

private:
	TPanelChildren<FOverlaySlot> Children{ this };
};
