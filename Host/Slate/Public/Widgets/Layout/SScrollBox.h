#pragma once

#include "CoreMinimal.h"
#include "Layout/Children.h"
#include "Styling/SlateTypes.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/Layout/SScrollBar.h"
#include "Widgets/SCompoundWidget.h"

class SScrollPanel;

/** Where ScrollDescendantIntoView puts the widget. */
enum class EDescendantScrollDestination : uint8
{
	/** The shortest way. */
	IntoView,
	TopOrLeft,
	Center,
	BottomOrRight,
};

/**
 * Widgets in a column (or row) of which a part is in view.
 *
 * Offsets are in Slate units from the start. They are brought up to date in the box's Tick, after layout, so both are 0
 * before the first frame, and what was added is known one frame later.
 */
class SScrollBox : public SCompoundWidget
{
public:
	class FSlot : public TBasicLayoutWidgetSlot<FSlot>
	{
	};
	using FScopedWidgetSlotArguments = TScopedWidgetSlotArguments<FSlot>;

	SLATE_BEGIN_ARGS(SScrollBox)
		: _ScrollBarStyle(nullptr)
		, _Orientation(Orient_Vertical)
		, _ScrollBarAlwaysVisible(false)
		, _ConsumeMouseWheel(EConsumeMouseWheel::WhenScrollingPossible)
	{
		_Clipping = EWidgetClipping::ClipToBounds;
	}
	SLATE_SLOT_ARGUMENT(SScrollBox::FSlot, Slots)
	SLATE_STYLE_ARGUMENT(FScrollBarStyle, ScrollBarStyle)
	SLATE_ARGUMENT(EOrientation, Orientation)
	SLATE_ARGUMENT(bool, ScrollBarAlwaysVisible)
	SLATE_ARGUMENT(EConsumeMouseWheel, ConsumeMouseWheel)
	/** By the wheel or the scroll bar; not by the functions below nor by growing content. */
	SLATE_EVENT(FOnUserScrolled, OnUserScrolled)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	static FSlot::FSlotArguments Slot() { return FSlot::FSlotArguments(MakeUnique<FSlot>()); }
	/** The slot is added at the end of the statement, see TScopedWidgetSlotArguments. */
	FScopedWidgetSlotArguments AddSlot() { return InsertSlot(INDEX_NONE); }
	FScopedWidgetSlotArguments InsertSlot(int32 Index);
	void RemoveSlot(const TSharedRef<SWidget>& WidgetToRemove);
	void ClearChildren();
	bool IsEmpty() const;

	/** Where the view is, or will be after the next Tick if SetScrollOffset was called. */
	float GetScrollOffset() const { return DesiredScrollOffset; }
	/** The offset at which the end is in view; 0 when everything is. */
	float GetScrollOffsetOfEnd() const;
	/** The part that is in view, from 0 to 1. */
	float GetViewFraction() const;
	/** How far the view is from the start, as a part of the whole. */
	float GetViewOffsetFraction() const;

	void ScrollToStart() { SetScrollOffset(0.0f); }
	/** Takes effect in the next Tick, with what has been added until then. */
	void ScrollToEnd() { bScrollToEnd = true; }
	void SetScrollOffset(float NewScrollOffset);
	/** Takes effect in the next Tick. No effect for a widget that is not in the box. */
	void ScrollDescendantIntoView(const TSharedPtr<SWidget>& WidgetToFind, bool InAnimateScroll = true,
		EDescendantScrollDestination InDestination = EDescendantScrollDestination::IntoView, float Padding = 0.0f);

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;
	virtual FReply OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;

private:
	void ScrollByUser(float NewOffset);
	void ScrollBarMoved(float OffsetFraction);
	float GetContentLength() const;
	float GetViewLength(const FGeometry& AllottedGeometry) const;
	void ApplyPendingRequests(const FGeometry& AllottedGeometry);

	struct FRevealRequest
	{
		TWeakPtr<SWidget> Widget;
		EDescendantScrollDestination Destination;
		float Padding;
	};

	EOrientation Orientation = Orient_Vertical;
	EConsumeMouseWheel ConsumeMouseWheel = EConsumeMouseWheel::WhenScrollingPossible;
	bool bScrollBarAlwaysVisible = false;
	bool bScrollToEnd = false;
	float DesiredScrollOffset = 0.0f;
	float ViewLength = 0.0f; // at the last Tick
	TOptional<FRevealRequest> RevealRequest;
	FOnUserScrolled OnUserScrolled;
	TSharedPtr<SScrollPanel> ScrollPanel;
	TSharedPtr<SScrollBar> ScrollBar;
};
