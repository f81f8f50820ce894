#include "Widgets/SBoxPanel.h"

#include "Layout/LayoutUtils.h"

TArray<float> FBoxPanelSpans::Distribute(const TArray<FSlotRequest>& Requests, float AllottedSize)
{
	float FixedSize = 0.0f;
	float TotalWeight = 0.0f;
	for (const FSlotRequest& Request : Requests)
	{
		FixedSize += Request.DesiredSize;
		TotalWeight += Request.bStretches ? Request.Weight : 0.0f;
	}
	const float ToShare = FMath::Max(AllottedSize - FixedSize, 0.0f);

	TArray<float> Sizes;
	Sizes.Reserve(Requests.Num());
	for (const FSlotRequest& Request : Requests)
	{
		float Share = Request.bStretches && TotalWeight > 0.0f ? ToShare * Request.Weight / TotalWeight : 0.0f;
		if (Request.MaxSize > 0.0f)
		{
			Share = FMath::Min(Share, Request.MaxSize);
		}
		Sizes.Add(Request.DesiredSize + Share);
	}
	return Sizes;
}

template <typename SlotType, EOrientation Orientation>
FVector2D TBoxPanel<SlotType, Orientation>::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	float Length = 0.0f;
	float Thickness = 0.0f;
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		const SlotType& Slot = Children[Index];
		if (!Slot.GetWidget()->GetVisibility().TakesSpace())
		{
			continue;
		}
		const FVector2D Desired = Slot.GetWidget()->GetDesiredSize();
		const float MaxSize = Slot.GetMaxSize() > 0.0f ? Slot.GetMaxSize() : MAX_flt;
		Length += FMath::Min(Along(Desired), MaxSize) + PaddingAlong(Slot.GetPadding());
		Thickness = FMath::Max(Thickness, Across(Desired) + Across(Slot.GetPadding().GetDesiredSize()));
	}
	return Join(Length, Thickness);
}

template <typename SlotType, EOrientation Orientation>
TArray<FBoxPanelSpans::FSlotRequest> TBoxPanel<SlotType, Orientation>::MakeRequests() const
{
	TArray<FBoxPanelSpans::FSlotRequest> Requests;
	Requests.Reserve(Children.Num());
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		const SlotType& Slot = Children[Index];
		FBoxPanelSpans::FSlotRequest Request;
		if (Slot.GetWidget()->GetVisibility().TakesSpace())
		{
			Request.bStretches = Slot.GetSizeRule() == ESlotSizeRule::Stretch;
			Request.Weight = Slot.GetWeight();
			Request.MaxSize = Slot.GetMaxSize();
			Request.DesiredSize = PaddingAlong(Slot.GetPadding());
			if (!Request.bStretches)
			{
				const float Desired = Along(Slot.GetWidget()->GetDesiredSize());
				Request.DesiredSize += Request.MaxSize > 0.0f ? FMath::Min(Desired, Request.MaxSize) : Desired;
			}
		}
		Requests.Add(Request);
	}
	return Requests;
}

template <typename SlotType, EOrientation Orientation>
FArrangedWidget TBoxPanel<SlotType, Orientation>::ArrangeSlot(
	const FGeometry& AllottedGeometry, const SlotType& Slot, float SlotOffset, float SlotLength) const
{
	const FVector2D Allotted = Join(SlotLength, Across(AllottedGeometry.GetLocalSize()));
	const FVector2D Desired = Slot.GetWidget()->GetDesiredSize();
	const FMargin& Padding = Slot.GetPadding();
	const FAlignedSpan X = SlateLayout::AlignSpan(static_cast<float>(Allotted.X), static_cast<float>(Desired.X),
		Padding.Left, Padding.Right, Slot.GetHorizontalAlignment());
	const FAlignedSpan Y = SlateLayout::AlignSpan(static_cast<float>(Allotted.Y), static_cast<float>(Desired.Y),
		Padding.Top, Padding.Bottom, Slot.GetVerticalAlignment());
	const FVector2D Offset = FVector2D(X.Offset, Y.Offset) + Join(SlotOffset, 0.0f);
	return FArrangedWidget(
		Slot.GetWidget(), AllottedGeometry.MakeChild(FVector2D(X.Size, Y.Size), FSlateLayoutTransform(1.0f, Offset)));
}

template <typename SlotType, EOrientation Orientation>
void TBoxPanel<SlotType, Orientation>::OnArrangeChildren(
	const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const
{
	const TArray<float> Lengths = FBoxPanelSpans::Distribute(MakeRequests(), Along(AllottedGeometry.GetLocalSize()));
	float Offset = 0.0f;
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		const SlotType& Slot = Children[Index];
		const EVisibility ChildVisibility = Slot.GetWidget()->GetVisibility();
		if (ArrangedChildren.Accepts(ChildVisibility))
		{
			ArrangedChildren.AddWidget(ChildVisibility, ArrangeSlot(AllottedGeometry, Slot, Offset, Lengths[Index]));
		}
		Offset += Lengths[Index];
	}
}

template class TBoxPanel<SVerticalBoxSlot, Orient_Vertical>;
template class TBoxPanel<SHorizontalBoxSlot, Orient_Horizontal>;

void SVerticalBox::Construct(const FArguments& InArgs)
{
	Children.AddSlots(MoveTemp(const_cast<TArray<FSlot::FSlotArguments>&>(InArgs._Slots)));
}

void SHorizontalBox::Construct(const FArguments& InArgs)
{
	Children.AddSlots(MoveTemp(const_cast<TArray<FSlot::FSlotArguments>&>(InArgs._Slots)));
}
