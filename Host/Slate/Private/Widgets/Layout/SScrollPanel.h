#pragma once

#include "CoreMinimal.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/SPanel.h"

/**
 * The part of a scroll box that holds its slots.
 *
 * Each slot's size is kept, and only those are measured again that have changed. Where each ends is added up from
 * there; a frame finds the first slot in view by bisection and goes on to the last one. What is out of view costs
 * nothing, and a slot at the end of thousands what it costs alone.
 */
class SScrollPanel final : public SPanel
{
public:
	SLATE_BEGIN_ARGS(SScrollPanel)
		: _Orientation(Orient_Vertical)
	{
		_Visibility = EVisibility::SelfHitTestInvisible;
	}
	SLATE_ARGUMENT(EOrientation, Orientation)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) { Orientation = InArgs._Orientation; }

	virtual FChildren* GetChildren() override { return &Slots; }

	float GetContentLength() const { return SlotEnds.Num() > 0 ? SlotEnds.Last() : 0.0f; }
	/** Where Descendant begins and ends, as offsets from the start; false if it is not in the panel. */
	bool FindSpanOf(
		const FGeometry& AllottedGeometry, const TSharedRef<SWidget>& Descendant, float& OutBegin, float& OutEnd) const;

	TPanelChildren<SScrollBox::FSlot> Slots{ this };
	float ViewOffset = 0.0f;

protected:
	virtual void OnLayoutOutOfDate(SWidget* Child) override;
	virtual void PrepassChildren(float InLayoutScaleMultiplier) override;
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual void OnArrangeChildren(
		const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const override;

private:
	float Along(const FVector2D& Size) const
	{
		return static_cast<float>(Orientation == Orient_Vertical ? Size.Y : Size.X);
	}
	/** The first slot that ends behind an offset. */
	int32 FindSlotAt(float Offset) const;
	FArrangedWidget ArrangeSlot(const FGeometry& AllottedGeometry, int32 SlotIndex) const;

	/** Asks a slot's widget for its size; with the slot's padding, and nothing for a collapsed one. */
	void MeasureSlot(int32 SlotIndex, float LayoutScaleMultiplier);
	/** The index of each changed child's slot, from the smallest on. */
	TArray<int32> TakeChangedSlots();

	EOrientation Orientation = Orient_Vertical;
	// One of each for every slot that was there when last measured.
	TArray<FVector2D> SlotSizes;
	TArray<float> SlotEnds;
	TMap<const SWidget*, int32> SlotIndices;
	// Not dereferenced: they may be gone.
	TArray<const SWidget*> ChangedChildren;
	bool bAllChanged = true;
};
