#pragma once

#include "CoreMinimal.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/Geometry.h"
#include "Layout/SlateRect.h"
#include "Styling/WidgetStyle.h"
#include "Types/PaintArgs.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SKestrelPart;

/** Makes the content of a part. */
DECLARE_DELEGATE_RetVal(TSharedRef<SWidget>, FOnMakeKestrelPart);
/** A part is painted for the first time; its height changes within the next frames. */
DECLARE_DELEGATE_OneParam(FOnKestrelPartShown, const TSharedRef<SKestrelPart>&);

/**
 * A part of a long scrolling content that is not final before it is in view: a wrapped text in it learns its width, or
 * the whole content is made only then. Until it is made, it stands for its content in the order of the focus.
 */
class SKestrelPart : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelPart)
		: _EstimatedHeight(0.0f)
		, _PaintsWhole(false)
	{
	}
	/** What is there from the start, if OnMake is not bound. */
	SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_EVENT(FOnMakeKestrelPart, OnMake)
	/** Until the content is made, in Slate units. */
	SLATE_ARGUMENT(float, EstimatedHeight)
	/**
	 * The first time, paint what is out of view as well, so that all wrapped texts learn their widths at once. For
	 * something of limited size without parts in it.
	 */
	SLATE_ARGUMENT(bool, PaintsWhole)
	SLATE_EVENT(FOnKestrelPartShown, OnShown)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;
	virtual bool SupportsKeyboardFocus() const override { return OnMake.IsBound(); }
	/** Makes the content, before it is in view. */
	void Make();
	virtual FReply OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent) override;

protected:
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override;

private:
	FOnMakeKestrelPart OnMake; // bound until the content is made
	FOnKestrelPartShown OnShown;
	bool bPaintsWhole = false;
	int32 NumPaintedFrames = 0; // 2: two or more
};
