#pragma once

#include "CoreMinimal.h"
#include "Layout/Children.h"
#include "Types/SlateStructs.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SPanel.h"

/** Sets or limits the size that its one child asks for. */
class SBox : public SPanel
{
public:
	SLATE_BEGIN_ARGS(SBox)
		: _HAlign(HAlign_Fill)
		, _VAlign(VAlign_Fill)
	{
		_Visibility = EVisibility::SelfHitTestInvisible;
	}
	SLATE_ARGUMENT(EHorizontalAlignment, HAlign)
	SLATE_ARGUMENT(EVerticalAlignment, VAlign)
	SLATE_ATTRIBUTE(FMargin, Padding)
	SLATE_ATTRIBUTE(FOptionalSize, WidthOverride)
	SLATE_ATTRIBUTE(FOptionalSize, HeightOverride)
	SLATE_ATTRIBUTE(FOptionalSize, MinDesiredWidth)
	SLATE_ATTRIBUTE(FOptionalSize, MinDesiredHeight)
	SLATE_ATTRIBUTE(FOptionalSize, MaxDesiredWidth)
	SLATE_ATTRIBUTE(FOptionalSize, MaxDesiredHeight)
	SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	void SetContent(const TSharedRef<SWidget>& InContent) { ChildSlot[InContent]; }
	void SetWidthOverride(TAttribute<FOptionalSize> InWidth) { WidthOverride.Assign(this, InWidth); }

	virtual FChildren* GetChildren() override { return &ChildSlot; }

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual void OnArrangeChildren(
		const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const override;

private:
	FSingleWidgetChildrenWithBasicLayoutSlot ChildSlot{ this };
	TCachedAttribute<FOptionalSize> WidthOverride{ EInvalidateWidgetReason::Layout };
	TCachedAttribute<FOptionalSize> HeightOverride{ EInvalidateWidgetReason::Layout };
	TCachedAttribute<FOptionalSize> MinDesiredWidth{ EInvalidateWidgetReason::Layout };
	TCachedAttribute<FOptionalSize> MinDesiredHeight{ EInvalidateWidgetReason::Layout };
	TCachedAttribute<FOptionalSize> MaxDesiredWidth{ EInvalidateWidgetReason::Layout };
	TCachedAttribute<FOptionalSize> MaxDesiredHeight{ EInvalidateWidgetReason::Layout };
};
