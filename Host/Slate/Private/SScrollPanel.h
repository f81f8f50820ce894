#pragma once

#include "CoreMinimal.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/SPanel.h"

/**
 * The part of a scroll box that holds its slots.
 *
 * Where each slot ends is computed together with the desired size, so only when a child has changed; a frame finds the
 * first slot in view by bisection and goes on to the last one. What is out of view costs nothing.
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
	/** Where the child that holds Descendant begins and ends; false if none does. */
	bool FindSpanOf(const TSharedRef<SWidget>& Descendant, float& OutBegin, float& OutEnd) const;

	TPanelChildren<SScrollBox::FSlot> Slots{ this };
	float ViewOffset = 0.0f;

protected:
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

	EOrientation Orientation = Orient_Vertical;
	mutable TArray<float> SlotEnds;
};
