#pragma once

#include "CoreMinimal.h"
#include "Layout/SlateRect.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

/** Covers a window and shows its content beside an anchor: below it, or where else there is room. */
class SPopup : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SPopup)
		: _Placement(MenuPlacement_BelowAnchor)
	{
		_Visibility = EVisibility::SelfHitTestInvisible;
	}
	SLATE_DEFAULT_SLOT(FArguments, Content)
	/** In absolute space; asked each time the window is laid out. */
	SLATE_ATTRIBUTE(FSlateRect, Anchor)
	SLATE_ARGUMENT(EMenuPlacement, Placement)
	/** Whether arrow keys and Tab move the keyboard focus inside. */
	SLATE_ARGUMENT(bool, IsMenu)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	const TSharedRef<SWidget>& GetContent() const { return ChildSlot.GetWidget(); }

	virtual bool SupportsKeyboardFocus() const override { return bIsMenu; }
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;

protected:
	/** Nothing: a pop-up does not make its window larger. */
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override { return FVector2D(0.0, 0.0); }
	virtual void OnArrangeChildren(
		const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const override;

private:
	TAttribute<FSlateRect> Anchor;
	EMenuPlacement Placement = MenuPlacement_BelowAnchor;
	bool bIsMenu = false;
};
