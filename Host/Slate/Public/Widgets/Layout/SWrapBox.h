#pragma once

#include "CoreMinimal.h"
#include "Layout/Children.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SPanel.h"

/**
 * Widgets in a row that goes on in the next line where the width ends. Collapsed children take no part; one that is
 * wider than the box has a line to itself.
 *
 * With UseAllottedSize the width is the box's own of the last frame, so the height follows a change of width one frame
 * late; before the first frame it is PreferredSize.
 */
class SWrapBox : public SPanel
{
public:
	class FSlot : public TBasicLayoutWidgetSlot<FSlot>
	{
	};
	using FScopedWidgetSlotArguments = TScopedWidgetSlotArguments<FSlot>;

	SLATE_BEGIN_ARGS(SWrapBox)
		: _PreferredSize(100.0f)
		, _InnerSlotPadding(FVector2D(0.0, 0.0))
		, _UseAllottedSize(false)
	{
		_Visibility = EVisibility::SelfHitTestInvisible;
	}
	SLATE_SLOT_ARGUMENT(SWrapBox::FSlot, Slots)
	/** Where lines end, in Slate units. */
	SLATE_ATTRIBUTE(float, PreferredSize)
	/** Between neighbours in a line, and between lines. */
	SLATE_ARGUMENT(FVector2D, InnerSlotPadding)
	SLATE_ARGUMENT(bool, UseAllottedSize)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	static FSlot::FSlotArguments Slot() { return FSlot::FSlotArguments(MakeUnique<FSlot>()); }

	virtual FChildren* GetChildren() override { return &Slots; }
	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual void OnArrangeChildren(
		const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const override;

private:
	/** Where a child lies, padding included, from the box's corner. */
	struct FPlace
	{
		int32 SlotIndex = 0;
		FVector2D Offset;
		FVector2D Size; // as high as its line
	};
	TArray<FPlace> ArrangeLines(float Width) const;

	TPanelChildren<FSlot> Slots{ this };
	TAttribute<float> PreferredSize;
	FVector2D InnerSlotPadding;
	bool bUseAllottedSize = false;
};
