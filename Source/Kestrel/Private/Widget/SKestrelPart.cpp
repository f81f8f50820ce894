#include "Widget/SKestrelPart.h"

#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/ChildrenBase.h"
#include "Layout/Geometry.h"
#include "Layout/SlateRect.h"
#include "Styling/WidgetStyle.h"
#include "Types/SlateEnums.h"
#include "Widgets/Layout/SBox.h"

namespace KestrelPart
{
/** The last widget in Widget that can have the focus: whoever comes to a part that is not made comes from below. */
TSharedPtr<SWidget> FindLastFocusable(const TSharedRef<SWidget>& Widget)
{
	FChildren* Children = Widget->GetChildren();
	TSharedPtr<SWidget> Found;
	for (int32 Index = Children->Num() - 1; Index >= 0 && !Found.IsValid(); --Index)
	{
		Found = FindLastFocusable(Children->GetChildAt(Index));
	}
	return Found.IsValid() || !Widget->SupportsKeyboardFocus() ? Found : Widget.ToSharedPtr();
}
}

void SKestrelPart::Construct(const FArguments& InArgs)
{
	OnMake = InArgs._OnMake;
	OnShown = InArgs._OnShown;
	bPaintsWhole = InArgs._PaintsWhole;
	if (!OnMake.IsBound())
	{
		ChildSlot[InArgs._Content.Widget];
		return;
	}
	// clang-format off
	ChildSlot
	[
		SNew(SBox)
		.HeightOverride(InArgs._EstimatedHeight)
	];
	// clang-format on
}

void SKestrelPart::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	++NumPaintedFrames;
	if (NumPaintedFrames > 1)
	{
		SetCanTick(false);
		return;
	}
	OnShown.ExecuteIfBound(StaticCastSharedRef<SKestrelPart>(AsShared()));
	if (OnMake.IsBound())
	{
		Make();
		// It is painted in this very frame, after the layout.
		const FVector2D Below(AllottedGeometry.LocalToAbsolute(FVector2D(0.0, 1.0)));
		const double Scale = Below.Y - FVector2D(AllottedGeometry.GetAbsolutePosition()).Y;
		ChildSlot.GetWidget()->SlatePrepass(static_cast<float>(Scale));
	}
}

int32 SKestrelPart::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	constexpr float Far = 1.0e6f;
	const bool bWhole = bPaintsWhole && NumPaintedFrames == 1;
	const FSlateRect Culling =
		bWhole ? FSlateRect(MyCullingRect.Left, -Far, MyCullingRect.Right, Far) : FSlateRect(MyCullingRect);
	return SCompoundWidget::OnPaint(
		Args, AllottedGeometry, Culling, OutDrawElements, LayerId, InWidgetStyle, bParentEnabled);
}

void SKestrelPart::Make()
{
	const FOnMakeKestrelPart Maker = OnMake;
	OnMake.Unbind();
	ChildSlot[Maker.Execute()];
}

FReply SKestrelPart::OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent)
{
	if (!OnMake.IsBound())
	{
		return FReply::Unhandled();
	}
	Make();
	const TSharedPtr<SWidget> Last = KestrelPart::FindLastFocusable(ChildSlot.GetWidget());
	return Last.IsValid() ? FReply::Handled().SetUserFocus(Last.ToSharedRef(), InFocusEvent.GetCause())
						  : FReply::Unhandled();
}
