#pragma once

#include "CoreMinimal.h"
#include "Layout/Children.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SPanel.h"

/** Widgets side by side, or one below the other, that share the room as the user drags the handles between them. */
class SSplitter : public SPanel
{
public:
	class FSlot : public TSlotBase<FSlot>
	{
	public:
		SLATE_SLOT_BEGIN_ARGS(FSlot, TSlotBase<FSlot>)
		/** A share, in relation to those of the others; 1 if nothing is said. */
		typename FSlot::FSlotArguments& Value(float InValue)
		{
			ValueArgument = InValue;
			return Me();
		}
		float ValueArgument = 1.0f;
		SLATE_SLOT_END_ARGS()

		void Construct(FSlotArguments&& InArgs)
		{
			SizeValue = InArgs.ValueArgument;
			TSlotBase<FSlot>::Construct(MoveTemp(InArgs));
		}

		float GetSizeValue() const { return SizeValue; }
		void SetSizeValue(float InValue)
		{
			SizeValue = InValue;
			Invalidate(EInvalidateWidgetReason::Layout);
		}

	private:
		float SizeValue = 1.0f;
	};
	using FScopedWidgetSlotArguments = TScopedWidgetSlotArguments<FSlot>;

	SLATE_BEGIN_ARGS(SSplitter)
		: _Orientation(Orient_Horizontal)
		, _PhysicalSplitterHandleSize(5.0f)
	{
	}
	SLATE_SLOT_ARGUMENT(SSplitter::FSlot, Slots)
	SLATE_ARGUMENT(EOrientation, Orientation)
	SLATE_ARGUMENT(float, PhysicalSplitterHandleSize)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	static FSlot::FSlotArguments Slot() { return FSlot::FSlotArguments(MakeUnique<FSlot>()); }
	FScopedWidgetSlotArguments AddSlot(int32 AtIndex = INDEX_NONE)
	{
		return FScopedWidgetSlotArguments(MakeUnique<FSlot>(), Slots, AtIndex);
	}
	FSlot& SlotAt(int32 SlotIndex) { return Slots[SlotIndex]; }
	const FSlot& SlotAt(int32 SlotIndex) const { return Slots[SlotIndex]; }
	void RemoveAt(int32 IndexOfChildToRemove) { Slots.Remove(Slots[IndexOfChildToRemove].GetWidget()); }
	EOrientation GetOrientation() const { return Orientation; }

	virtual FChildren* GetChildren() override { return &Slots; }
	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual TOptional<EMouseCursor::Type> GetCursor() const override;

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual void OnArrangeChildren(
		const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const override;

private:
	/** A slot that is shown, and where it lies along the splitter. */
	struct FSpan
	{
		int32 SlotIndex = 0;
		float Offset = 0.0f;
		float Length = 0.0f;
	};

	TArray<FSpan> ComputeSpans(const FGeometry& Geometry) const;
	float Along(const FVector2D& Vector) const;
	/** The number of the handle below a place, from 0; INDEX_NONE for none. */
	int32 FindHandle(const FGeometry& Geometry, const FVector2D& ScreenPosition) const;

	TPanelChildren<FSlot> Slots{ this };
	EOrientation Orientation = Orient_Horizontal;
	float HandleSize = 0.0f;
	int32 DraggedHandle = INDEX_NONE;
	bool bHandleIsHovered = false; // at the last move of the pointer
};
