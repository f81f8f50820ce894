#pragma once

#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SLeafWidget.h"

/** Takes space and shows nothing. */
class SSpacer : public SLeafWidget
{
public:
	SLATE_BEGIN_ARGS(SSpacer) { _Visibility = EVisibility::SelfHitTestInvisible; }
	SLATE_ATTRIBUTE(FVector2D, Size)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) { SpacerSize.Assign(this, InArgs._Size); }

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override { return SpacerSize.Get(); }

private:
	TCachedAttribute<FVector2D> SpacerSize{ EInvalidateWidgetReason::Layout };
};
