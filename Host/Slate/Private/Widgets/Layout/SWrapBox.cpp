#include "Widgets/Layout/SWrapBox.h"

#include "Layout/LayoutUtils.h"

void SWrapBox::Construct(const FArguments& InArgs)
{
	PreferredSize = InArgs._PreferredSize;
	InnerSlotPadding = InArgs._InnerSlotPadding;
	bUseAllottedSize = InArgs._UseAllottedSize;
	SetCanTick(bUseAllottedSize);
	Slots.AddSlots(MoveTemp(const_cast<TArray<FSlot::FSlotArguments>&>(InArgs._Slots)));
}

void SWrapBox::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	SPanel::Tick(AllottedGeometry, InCurrentTime, InDeltaTime);
	const float Width = static_cast<float>(FVector2D(AllottedGeometry.GetLocalSize()).X);
	if (bUseAllottedSize && !FMath::IsNearlyEqual(PreferredSize.Get(), Width))
	{
		PreferredSize = Width;
		Invalidate(EInvalidateWidgetReason::Layout);
	}
}

TArray<SWrapBox::FPlace> SWrapBox::ArrangeLines(float Width) const
{
	TArray<FPlace> Places;
	int32 LineStart = 0;
	FVector2D Pen(0.0, 0.0);
	double LineHeight = 0.0;
	const auto EndLine = [&]() {
		for (int32 Index = LineStart; Index < Places.Num(); ++Index)
		{
			Places[Index].Size.Y = LineHeight;
		}
		LineStart = Places.Num();
		Pen = FVector2D(0.0, Pen.Y + LineHeight + InnerSlotPadding.Y);
		LineHeight = 0.0;
	};
	for (int32 Index = 0; Index < Slots.Num(); ++Index)
	{
		const TSharedRef<SWidget>& Widget = Slots[Index].GetWidget();
		if (!Widget->GetVisibility().TakesSpace())
		{
			continue;
		}
		const FVector2D Size = FVector2D(Widget->GetDesiredSize()) + Slots[Index].GetPadding().GetDesiredSize();
		if (Places.Num() > LineStart && Pen.X + Size.X > Width)
		{
			EndLine();
		}
		Places.Add({ Index, Pen, Size });
		Pen.X += Size.X + InnerSlotPadding.X;
		LineHeight = FMath::Max(LineHeight, Size.Y);
	}
	EndLine();
	return Places;
}

FVector2D SWrapBox::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	FVector2D Size(0.0, 0.0);
	for (const FPlace& Place : ArrangeLines(PreferredSize.Get()))
	{
		const FVector2D End = Place.Offset + Place.Size;
		Size = FVector2D(FMath::Max(Size.X, End.X), FMath::Max(Size.Y, End.Y));
	}
	return Size;
}

void SWrapBox::OnArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const
{
	for (const FPlace& Place : ArrangeLines(PreferredSize.Get()))
	{
		const FSlot& Each = Slots[Place.SlotIndex];
		const EVisibility ChildVisibility = Each.GetWidget()->GetVisibility();
		if (!ArrangedChildren.Accepts(ChildVisibility))
		{
			continue;
		}
		const FVector2D Desired = Each.GetWidget()->GetDesiredSize();
		const FMargin& Padding = Each.GetPadding();
		const FAlignedSpan X = SlateLayout::AlignSpan(static_cast<float>(Place.Size.X), static_cast<float>(Desired.X),
			Padding.Left, Padding.Right, Each.GetHorizontalAlignment());
		const FAlignedSpan Y = SlateLayout::AlignSpan(static_cast<float>(Place.Size.Y), static_cast<float>(Desired.Y),
			Padding.Top, Padding.Bottom, Each.GetVerticalAlignment());
		const FSlateLayoutTransform Transform(1.0f, Place.Offset + FVector2D(X.Offset, Y.Offset));
		ArrangedChildren.AddWidget(ChildVisibility,
			FArrangedWidget(Each.GetWidget(), AllottedGeometry.MakeChild(FVector2D(X.Size, Y.Size), Transform)));
	}
}
