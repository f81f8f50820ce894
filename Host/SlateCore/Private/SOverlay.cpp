#include "Widgets/SOverlay.h"

#include "Layout/LayoutUtils.h"

void SOverlay::Construct(const FArguments& InArgs)
{
	Children.AddSlots(MoveTemp(const_cast<TArray<FOverlaySlot::FSlotArguments>&>(InArgs._Slots)));
}

SOverlay::FScopedWidgetSlotArguments SOverlay::AddSlot(int32 ZOrder)
{
	const int32 Foremost = Children.Num() > 0 ? Children[Children.Num() - 1].ZOrder : 0;
	TUniquePtr<FOverlaySlot> NewSlot = MakeUnique<FOverlaySlot>();
	NewSlot->ZOrder = ZOrder == INDEX_NONE ? Foremost + 1 : ZOrder;
	int32 Index = Children.Num();
	while (Index > 0 && Children[Index - 1].ZOrder > NewSlot->ZOrder)
	{
		--Index;
	}
	return FScopedWidgetSlotArguments(MoveTemp(NewSlot), Children, Index);
}

FVector2D SOverlay::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	FVector2D Largest(0.0, 0.0);
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		const FOverlaySlot& OverlaySlot = Children[Index];
		if (OverlaySlot.GetWidget()->GetVisibility().TakesSpace())
		{
			const FVector2D Size =
				FVector2D(OverlaySlot.GetWidget()->GetDesiredSize()) + OverlaySlot.GetPadding().GetDesiredSize();
			Largest = FVector2D(FMath::Max(Largest.X, Size.X), FMath::Max(Largest.Y, Size.Y));
		}
	}
	return Largest;
}

void SOverlay::OnArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const
{
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		const FOverlaySlot& OverlaySlot = Children[Index];
		ArrangeSingleChild(AllottedGeometry, ArrangedChildren, OverlaySlot.GetWidget(),
			OverlaySlot.GetHorizontalAlignment(), OverlaySlot.GetVerticalAlignment(), OverlaySlot.GetPadding());
	}
}

int32 SOverlay::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	FArrangedChildren Arranged(EVisibility::Visible);
	ArrangeChildren(AllottedGeometry, Arranged);
	const bool bEnabled = ShouldBeEnabled(bParentEnabled);
	int32 TopLayer = LayerId;
	for (const FArrangedWidget& Child : Arranged.GetInternalArray())
	{
		// Each lies wholly above the one before.
		TopLayer = Child.Widget->Paint(
			Args, Child.Geometry, MyCullingRect, OutDrawElements, TopLayer + 1, InWidgetStyle, bEnabled);
	}
	return TopLayer;
}
