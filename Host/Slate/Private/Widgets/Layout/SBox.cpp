#include "Widgets/Layout/SBox.h"

#include "Layout/LayoutUtils.h"

void SBox::Construct(const FArguments& InArgs)
{
	WidthOverride.Assign(this, InArgs._WidthOverride);
	HeightOverride.Assign(this, InArgs._HeightOverride);
	MinDesiredWidth.Assign(this, InArgs._MinDesiredWidth);
	MinDesiredHeight.Assign(this, InArgs._MinDesiredHeight);
	MaxDesiredWidth.Assign(this, InArgs._MaxDesiredWidth);
	MaxDesiredHeight.Assign(this, InArgs._MaxDesiredHeight);
	ChildSlot.HAlign(InArgs._HAlign).VAlign(InArgs._VAlign).Padding(InArgs._Padding)[InArgs._Content.Widget];
}

namespace Box
{
static double Limit(
	double Desired, const FOptionalSize& Override, const FOptionalSize& Smallest, const FOptionalSize& Largest)
{
	if (Override.IsSet())
	{
		return Override.Get();
	}
	const double AtMost = Largest.IsSet() ? FMath::Min(Desired, static_cast<double>(Largest.Get())) : Desired;
	return Smallest.IsSet() ? FMath::Max(AtMost, static_cast<double>(Smallest.Get())) : AtMost;
}
}

FVector2D SBox::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	const TSharedRef<SWidget>& Child = ChildSlot.GetWidget();
	if (!Child->GetVisibility().TakesSpace())
	{
		return FVector2D(0.0, 0.0);
	}
	const FVector2D Desired = FVector2D(Child->GetDesiredSize()) + ChildSlot.GetPadding().GetDesiredSize();
	return FVector2D(Box::Limit(Desired.X, WidthOverride.Get(), MinDesiredWidth.Get(), MaxDesiredWidth.Get()),
		Box::Limit(Desired.Y, HeightOverride.Get(), MinDesiredHeight.Get(), MaxDesiredHeight.Get()));
}

void SBox::OnArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const
{
	ArrangeSingleChild(AllottedGeometry, ArrangedChildren, ChildSlot.GetWidget(), ChildSlot.GetHorizontalAlignment(),
		ChildSlot.GetVerticalAlignment(), ChildSlot.GetPadding());
}
