#pragma once

#include "CoreMinimal.h"
#include "Styling/SlateTypes.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SLeafWidget.h"

/** The offset that the user has scrolled to: in Slate units from SScrollBox, as a fraction from SScrollBar. */
DECLARE_DELEGATE_OneParam(FOnUserScrolled, float);

/** A thumb on a track: which part of something is in view. The user drags the thumb. */
class SScrollBar : public SLeafWidget
{
public:
	SLATE_BEGIN_ARGS(SScrollBar)
		: _Orientation(Orient_Vertical)
		, _Style(nullptr)
	{
	}
	SLATE_ARGUMENT(EOrientation, Orientation)
	SLATE_STYLE_ARGUMENT(FScrollBarStyle, Style)
	SLATE_EVENT(FOnUserScrolled, OnUserScrolled)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	/** Both are fractions of the whole, from 0 to 1. */
	void SetState(float InOffsetFraction, float InThumbSizeFraction);
	/** False when everything is in view. */
	bool IsNeeded() const { return ThumbSizeFraction < 1.0f; }
	float ThumbSize() const { return ThumbSizeFraction; }

	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent) override;
	virtual FReply OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override;

private:
	/** Where on the track a pointer is, as a fraction of it. */
	float GetTrackFraction(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) const;

	EOrientation Orientation = Orient_Vertical;
	const FScrollBarStyle* Style = nullptr;
	FOnUserScrolled OnUserScrolled;
	float OffsetFraction = 0.0f;
	float ThumbSizeFraction = 1.0f;
	float DragGrabFraction = 0.0f; // how far into the thumb it was taken hold of
};
