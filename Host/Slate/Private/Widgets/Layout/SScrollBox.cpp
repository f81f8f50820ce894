#include "Widgets/Layout/SScrollBox.h"

#include "Layout/LayoutUtils.h"
#include "Widgets/Layout/SScrollPanel.h"
#include "Widgets/SBoxPanel.h"

namespace ScrollBox
{
// Slate units for a notch of the mouse wheel.
constexpr float WheelStep = 32.0f;
}

void SScrollPanel::OnLayoutOutOfDate(SWidget* Child)
{
	// The list would grow while nobody measures, such as in a tab that is not in front.
	const bool bIsListed = Child && ChangedChildren.Num() <= Slots.Num();
	if (bIsListed)
	{
		ChangedChildren.Add(Child);
	}
	else if (Child || !Slots.ChangesOrder())
	{
		bAllChanged = true;
		ChangedChildren.Reset();
	}
}

TArray<int32> SScrollPanel::TakeChangedSlots()
{
	TArray<int32> Indices;
	for (const SWidget* Child : ChangedChildren)
	{
		if (const int32* const Index = SlotIndices.Find(Child))
		{
			Indices.AddUnique(*Index);
		}
	}
	ChangedChildren.Reset();
	Indices.Sort();
	return Indices;
}

void SScrollPanel::MeasureSlot(int32 SlotIndex, float LayoutScaleMultiplier)
{
	const SScrollBox::FSlot& Slot = Slots[SlotIndex];
	SWidget& Widget = Slot.GetWidget().Get();
	SlotSizes[SlotIndex] = FVector2D(0.0, 0.0);
	if (Widget.GetVisibility().TakesSpace())
	{
		Widget.Prepass(LayoutScaleMultiplier);
		SlotSizes[SlotIndex] = FVector2D(Widget.GetDesiredSize()) + Slot.GetPadding().GetDesiredSize();
	}
}

void SScrollPanel::PrepassChildren(float InLayoutScaleMultiplier)
{
	int32 FirstNew = Slots.TakeFirstChange();
	if (bAllChanged || FirstNew < SlotSizes.Num())
	{
		FirstNew = 0;
		SlotIndices.Empty();
	}
	bAllChanged = false;
	SlotSizes.SetNum(Slots.Num());
	SlotEnds.SetNum(Slots.Num());
	int32 FirstChanged = FirstNew;
	for (const int32 Index : TakeChangedSlots())
	{
		MeasureSlot(Index, InLayoutScaleMultiplier);
		FirstChanged = FMath::Min(FirstChanged, Index);
	}
	for (int32 Index = FirstNew; Index < Slots.Num(); ++Index)
	{
		SlotIndices.Add(&Slots[Index].GetWidget().Get(), Index);
		MeasureSlot(Index, InLayoutScaleMultiplier);
	}
	for (int32 Index = FirstChanged; Index < Slots.Num(); ++Index)
	{
		SlotEnds[Index] = (Index > 0 ? SlotEnds[Index - 1] : 0.0f) + Along(SlotSizes[Index]);
	}
}

FVector2D SScrollPanel::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	double Thickness = 0.0;
	for (const FVector2D& Size : SlotSizes)
	{
		Thickness = FMath::Max(Thickness, Orientation == Orient_Vertical ? Size.X : Size.Y);
	}
	const double Length = GetContentLength();
	return Orientation == Orient_Vertical ? FVector2D(Thickness, Length) : FVector2D(Length, Thickness);
}

int32 SScrollPanel::FindSlotAt(float Offset) const
{
	int32 Low = 0;
	int32 High = SlotEnds.Num();
	while (Low < High)
	{
		const int32 Middle = (Low + High) / 2;
		if (SlotEnds[Middle] <= Offset)
		{
			Low = Middle + 1;
		}
		else
		{
			High = Middle;
		}
	}
	return Low;
}

FArrangedWidget SScrollPanel::ArrangeSlot(const FGeometry& AllottedGeometry, int32 SlotIndex) const
{
	const SScrollBox::FSlot& Slot = Slots[SlotIndex];
	const float Begin = SlotIndex > 0 ? SlotEnds[SlotIndex - 1] : 0.0f;
	const float Length = SlotEnds[SlotIndex] - Begin;
	const bool bIsVertical = Orientation == Orient_Vertical;
	const FVector2D Allotted = AllottedGeometry.GetLocalSize();
	const FVector2D Desired = Slot.GetWidget()->GetDesiredSize();
	const FMargin& Padding = Slot.GetPadding();
	const FAlignedSpan X = SlateLayout::AlignSpan(bIsVertical ? static_cast<float>(Allotted.X) : Length,
		static_cast<float>(Desired.X), Padding.Left, Padding.Right, Slot.GetHorizontalAlignment());
	const FAlignedSpan Y = SlateLayout::AlignSpan(bIsVertical ? Length : static_cast<float>(Allotted.Y),
		static_cast<float>(Desired.Y), Padding.Top, Padding.Bottom, Slot.GetVerticalAlignment());
	const float ShownAt = Begin - ViewOffset;
	const FVector2D SlotOffset = bIsVertical ? FVector2D(0.0, ShownAt) : FVector2D(ShownAt, 0.0);
	return FArrangedWidget(
		Slot.GetWidget(), AllottedGeometry.MakeChild(FVector2D(X.Size, Y.Size),
							  FSlateLayoutTransform(1.0f, SlotOffset + FVector2D(X.Offset, Y.Offset))));
}

void SScrollPanel::OnArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const
{
	const float ViewEnd = ViewOffset + Along(AllottedGeometry.GetLocalSize());
	// A slot that was added since the last layout has no place yet.
	const int32 NumPlaced = FMath::Min(SlotEnds.Num(), Slots.Num());
	for (int32 Index = FindSlotAt(ViewOffset); Index < NumPlaced; ++Index)
	{
		if (Index > 0 && SlotEnds[Index - 1] >= ViewEnd)
		{
			return;
		}
		const EVisibility SlotVisibility = Slots[Index].GetWidget()->GetVisibility();
		if (ArrangedChildren.Accepts(SlotVisibility))
		{
			ArrangedChildren.AddWidget(SlotVisibility, ArrangeSlot(AllottedGeometry, Index));
		}
	}
}

namespace ScrollBox
{
/** Where Parent puts its child; the parent's own place if the child has none. */
static FGeometry FindChildGeometry(const FArrangedWidget& Parent, const TSharedRef<SWidget>& Child)
{
	FArrangedChildren Arranged(EVisibility::Visible);
	Parent.Widget->ArrangeChildren(Parent.Geometry, Arranged);
	for (const FArrangedWidget& Candidate : Arranged.GetInternalArray())
	{
		if (Candidate.Widget == Child)
		{
			return Candidate.Geometry;
		}
	}
	return Parent.Geometry;
}
}

bool SScrollPanel::FindSpanOf(
	const FGeometry& AllottedGeometry, const TSharedRef<SWidget>& Descendant, float& OutBegin, float& OutEnd) const
{
	TArray<TSharedRef<SWidget>> Path; // from the descendant up
	TSharedPtr<SWidget> Next = Descendant;
	while (Next.IsValid() && Next.Get() != this)
	{
		Path.Add(Next.ToSharedRef());
		Next = Next->GetParentWidget();
	}
	for (int32 Index = 0; Next.IsValid() && Index < FMath::Min(Slots.Num(), SlotEnds.Num()); ++Index)
	{
		if (Slots[Index].GetWidget() != Path.Last())
		{
			continue;
		}
		FArrangedWidget Arranged = ArrangeSlot(AllottedGeometry, Index);
		for (int32 Depth = Path.Num() - 2; Depth >= 0; --Depth)
		{
			Arranged = FArrangedWidget(Path[Depth], ScrollBox::FindChildGeometry(Arranged, Path[Depth]));
		}
		OutBegin = ViewOffset + Along(AllottedGeometry.AbsoluteToLocal(Arranged.Geometry.GetAbsolutePosition()));
		OutEnd = OutBegin + Along(Arranged.Geometry.GetLocalSize());
		return true;
	}
	return false;
}

void SScrollBox::Construct(const FArguments& InArgs)
{
	Orientation = InArgs._Orientation;
	ConsumeMouseWheel = InArgs._ConsumeMouseWheel;
	bScrollBarAlwaysVisible = InArgs._ScrollBarAlwaysVisible;
	OnUserScrolled = InArgs._OnUserScrolled;
	SAssignNew(ScrollPanel, SScrollPanel).Orientation(Orientation).Clipping(EWidgetClipping::ClipToBounds);
	SAssignNew(ScrollBar, SScrollBar)
		.Orientation(Orientation)
		.Style(InArgs._ScrollBarStyle)
		.Visibility(bScrollBarAlwaysVisible ? EVisibility::Visible : EVisibility::Collapsed)
		.OnUserScrolled(this, &SScrollBox::ScrollBarMoved);
	ScrollPanel->Slots.AddSlots(MoveTemp(const_cast<TArray<FSlot::FSlotArguments>&>(InArgs._Slots)));

	// clang-format off
	if (Orientation == Orient_Vertical)
	{
		ChildSlot
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().FillWidth(1.0f)[ ScrollPanel.ToSharedRef() ]
			+ SHorizontalBox::Slot().AutoWidth()[ ScrollBar.ToSharedRef() ]
		];
	}
	else
	{
		ChildSlot
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot().FillHeight(1.0f)[ ScrollPanel.ToSharedRef() ]
			+ SVerticalBox::Slot().AutoHeight()[ ScrollBar.ToSharedRef() ]
		];
	}
	// clang-format on
}

SScrollBox::FScopedWidgetSlotArguments SScrollBox::InsertSlot(int32 Index)
{
	return FScopedWidgetSlotArguments(MakeUnique<FSlot>(), ScrollPanel->Slots, Index);
}

void SScrollBox::RemoveSlot(const TSharedRef<SWidget>& WidgetToRemove)
{
	ScrollPanel->Slots.Remove(WidgetToRemove);
}

void SScrollBox::ClearChildren()
{
	ScrollPanel->Slots.Empty();
}

bool SScrollBox::IsEmpty() const
{
	return ScrollPanel->Slots.Num() == 0;
}

float SScrollBox::GetContentLength() const
{
	return ScrollPanel->GetContentLength();
}

float SScrollBox::GetViewLength(const FGeometry& AllottedGeometry) const
{
	const FVector2D Size = AllottedGeometry.GetLocalSize();
	return static_cast<float>(Orientation == Orient_Vertical ? Size.Y : Size.X);
}

float SScrollBox::GetScrollOffsetOfEnd() const
{
	return ViewLength > 0.0f ? FMath::Max(GetContentLength() - ViewLength, 0.0f) : 0.0f;
}

float SScrollBox::GetViewFraction() const
{
	const float ContentLength = GetContentLength();
	return ContentLength > 0.0f ? FMath::Clamp(ViewLength / ContentLength, 0.0f, 1.0f) : 1.0f;
}

float SScrollBox::GetViewOffsetFraction() const
{
	const float ContentLength = GetContentLength();
	return ContentLength > 0.0f ? FMath::Clamp(DesiredScrollOffset / ContentLength, 0.0f, 1.0f) : 0.0f;
}

void SScrollBox::SetScrollOffset(float NewScrollOffset)
{
	DesiredScrollOffset = NewScrollOffset;
	bScrollToEnd = false;
}

void SScrollBox::ScrollDescendantIntoView(const TSharedPtr<SWidget>& WidgetToFind, bool InAnimateScroll,
	EDescendantScrollDestination InDestination, float Padding)
{
	RevealRequest = FRevealRequest{ WidgetToFind, InDestination, Padding };
}

void SScrollBox::ApplyPendingRequests(const FGeometry& AllottedGeometry)
{
	if (bScrollToEnd)
	{
		DesiredScrollOffset = GetScrollOffsetOfEnd();
		bScrollToEnd = false;
	}
	const TOptional<FRevealRequest> Request = RevealRequest;
	RevealRequest.Reset();
	const TSharedPtr<SWidget> Target = Request.IsSet() ? Request.GetValue().Widget.Pin() : nullptr;
	float Begin = 0.0f;
	float End = 0.0f;
	if (!Target.IsValid() || !ScrollPanel->FindSpanOf(AllottedGeometry, Target.ToSharedRef(), Begin, End))
	{
		return;
	}
	const float OffsetForTop = Begin - Request.GetValue().Padding;
	const float OffsetForBottom = End + Request.GetValue().Padding - ViewLength;
	switch (Request.GetValue().Destination)
	{
	case EDescendantScrollDestination::TopOrLeft:
		DesiredScrollOffset = OffsetForTop;
		break;
	case EDescendantScrollDestination::BottomOrRight:
		DesiredScrollOffset = OffsetForBottom;
		break;
	case EDescendantScrollDestination::Center:
		DesiredScrollOffset = (Begin + End - ViewLength) / 2.0f;
		break;
	case EDescendantScrollDestination::IntoView:
		DesiredScrollOffset = FMath::Min(FMath::Max(DesiredScrollOffset, OffsetForBottom), OffsetForTop);
		break;
	}
}

void SScrollBox::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	SCompoundWidget::Tick(AllottedGeometry, InCurrentTime, InDeltaTime);
	ViewLength = GetViewLength(AllottedGeometry);
	ApplyPendingRequests(AllottedGeometry);
	DesiredScrollOffset = FMath::Clamp(DesiredScrollOffset, 0.0f, GetScrollOffsetOfEnd());
	ScrollPanel->ViewOffset = DesiredScrollOffset;
	ScrollBar->SetState(GetViewOffsetFraction(), GetViewFraction());
	ScrollBar->SetVisibility(
		bScrollBarAlwaysVisible || ScrollBar->IsNeeded() ? EVisibility::Visible : EVisibility::Collapsed);
}

void SScrollBox::ScrollByUser(float NewOffset)
{
	bScrollToEnd = false;
	DesiredScrollOffset = FMath::Clamp(NewOffset, 0.0f, GetScrollOffsetOfEnd());
	OnUserScrolled.ExecuteIfBound(DesiredScrollOffset);
}

void SScrollBox::ScrollBarMoved(float OffsetFraction)
{
	ScrollByUser(OffsetFraction * GetContentLength());
}

FReply SScrollBox::OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (ConsumeMouseWheel == EConsumeMouseWheel::Never ||
		(GetScrollOffsetOfEnd() <= 0.0f && ConsumeMouseWheel == EConsumeMouseWheel::WhenScrollingPossible))
	{
		return FReply::Unhandled();
	}
	const float OffsetBefore = DesiredScrollOffset;
	ScrollByUser(DesiredScrollOffset - MouseEvent.GetWheelDelta() * ScrollBox::WheelStep);
	const bool bMoved = !FMath::IsNearlyEqual(OffsetBefore, DesiredScrollOffset);
	return bMoved || ConsumeMouseWheel == EConsumeMouseWheel::Always ? FReply::Handled() : FReply::Unhandled();
}
