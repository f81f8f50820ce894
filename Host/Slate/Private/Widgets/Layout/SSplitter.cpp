#include "Widgets/Layout/SSplitter.h"

namespace Splitter
{
/** Slate units that a slot keeps. */
constexpr float MinLength = 40.0f;
}

void SSplitter::Construct(const FArguments& InArgs)
{
	Orientation = InArgs._Orientation;
	HandleSize = InArgs._PhysicalSplitterHandleSize;
	SetCanTick(false);
	Slots.AddSlots(MoveTemp(const_cast<TArray<FSlot::FSlotArguments>&>(InArgs._Slots)));
}

float SSplitter::Along(const FVector2D& Vector) const
{
	return static_cast<float>(Orientation == Orient_Horizontal ? Vector.X : Vector.Y);
}

TArray<SSplitter::FSpan> SSplitter::ComputeSpans(const FGeometry& Geometry) const
{
	TArray<FSpan> Spans;
	float Sum = 0.0f;
	for (int32 Index = 0; Index < Slots.Num(); ++Index)
	{
		if (Slots[Index].GetWidget()->GetVisibility().TakesSpace())
		{
			Spans.Add({ Index });
			Sum += Slots[Index].GetSizeValue();
		}
	}
	const float Room = FMath::Max(Along(FVector2D(Geometry.GetLocalSize())) - HandleSize * (Spans.Num() - 1), 0.0f);
	float Offset = 0.0f;
	for (FSpan& Span : Spans)
	{
		Span.Offset = Offset;
		Span.Length = Sum > 0.0f
						  ? static_cast<float>(FMath::RoundToInt(Room * Slots[Span.SlotIndex].GetSizeValue() / Sum))
						  : 0.0f;
		Offset += Span.Length + HandleSize;
	}
	return Spans;
}

FVector2D SSplitter::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	FVector2D Size(0.0, 0.0);
	for (int32 Index = 0; Index < Slots.Num(); ++Index)
	{
		const FVector2D Desired(Slots[Index].GetWidget()->GetDesiredSize());
		if (Slots[Index].GetWidget()->GetVisibility().TakesSpace())
		{
			Size = Orientation == Orient_Horizontal ? FVector2D(Size.X + Desired.X, FMath::Max(Size.Y, Desired.Y))
													: FVector2D(FMath::Max(Size.X, Desired.X), Size.Y + Desired.Y);
		}
	}
	return Size;
}

void SSplitter::OnArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const
{
	const FVector2D Size(AllottedGeometry.GetLocalSize());
	for (const FSpan& Span : ComputeSpans(AllottedGeometry))
	{
		const TSharedRef<SWidget>& Widget = Slots[Span.SlotIndex].GetWidget();
		const bool bHorizontal = Orientation == Orient_Horizontal;
		const FVector2D ChildSize = bHorizontal ? FVector2D(Span.Length, Size.Y) : FVector2D(Size.X, Span.Length);
		const FVector2D Offset = bHorizontal ? FVector2D(Span.Offset, 0.0) : FVector2D(0.0, Span.Offset);
		ArrangedChildren.AddWidget(Widget->GetVisibility(),
			FArrangedWidget(Widget, AllottedGeometry.MakeChild(ChildSize, FSlateLayoutTransform(1.0f, Offset))));
	}
}

int32 SSplitter::FindHandle(const FGeometry& Geometry, const FVector2D& ScreenPosition) const
{
	const float Place = Along(FVector2D(Geometry.AbsoluteToLocal(ScreenPosition)));
	const TArray<FSpan> Spans = ComputeSpans(Geometry);
	for (int32 Index = 0; Index + 1 < Spans.Num(); ++Index)
	{
		const float End = Spans[Index].Offset + Spans[Index].Length;
		if (Place >= End && Place < End + HandleSize)
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

FReply SSplitter::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	const bool bLeft = MouseEvent.GetEffectingButton() == EKeys::LeftMouseButton;
	DraggedHandle = bLeft ? FindHandle(MyGeometry, MouseEvent.GetScreenSpacePosition()) : INDEX_NONE;
	return DraggedHandle == INDEX_NONE ? FReply::Unhandled() : FReply::Handled().CaptureMouse(SharedThis(this));
}

FReply SSplitter::OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (DraggedHandle == INDEX_NONE)
	{
		return FReply::Unhandled();
	}
	DraggedHandle = INDEX_NONE;
	return FReply::Handled().ReleaseMouseCapture();
}

FReply SSplitter::OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	const TArray<FSpan> Spans = ComputeSpans(MyGeometry);
	bHandleIsHovered = FindHandle(MyGeometry, MouseEvent.GetScreenSpacePosition()) != INDEX_NONE;
	if (!HasMouseCapture() || DraggedHandle == INDEX_NONE || DraggedHandle + 1 >= Spans.Num())
	{
		return FReply::Unhandled();
	}
	const FSpan& Before = Spans[DraggedHandle];
	const FSpan& After = Spans[DraggedHandle + 1];
	const float Place = Along(FVector2D(MyGeometry.AbsoluteToLocal(FVector2D(MouseEvent.GetScreenSpacePosition()))));
	const float Room = Before.Length + After.Length;
	const float Least = FMath::Min(Splitter::MinLength, Room / 2.0f);
	const float Length = FMath::Clamp(Place - Before.Offset - HandleSize / 2.0f, Least, Room - Least);
	const float Sum = Slots[Before.SlotIndex].GetSizeValue() + Slots[After.SlotIndex].GetSizeValue();
	if (Room > 0.0f)
	{
		Slots[Before.SlotIndex].SetSizeValue(Sum * Length / Room);
		Slots[After.SlotIndex].SetSizeValue(Sum * (Room - Length) / Room);
	}
	return FReply::Handled();
}

TOptional<EMouseCursor::Type> SSplitter::GetCursor() const
{
	if (!bHandleIsHovered && DraggedHandle == INDEX_NONE)
	{
		return TOptional<EMouseCursor::Type>();
	}
	return Orientation == Orient_Horizontal ? EMouseCursor::ResizeLeftRight : EMouseCursor::ResizeUpDown;
}
