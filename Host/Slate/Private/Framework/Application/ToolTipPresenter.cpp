#include "Framework/Application/ToolTipPresenter.h"

#include "Framework/Application/SPopup.h"
#include "Styling/AppStyle.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Text/STextBlock.h"

namespace ToolTipPresenter
{
constexpr double DelaySeconds = 0.5;
// Slate units.
constexpr float LongestLine = 400.0f;
constexpr float PointerHeight = 20.0f;
constexpr int32 ZOrder = 100;

static TSharedPtr<SWidget> FindSource(const TArray<TWeakPtr<SWidget>>& Path)
{
	for (int32 Index = Path.Num() - 1; Index >= 0; --Index)
	{
		const TSharedPtr<SWidget> Widget = Path[Index].Pin();
		if (Widget.IsValid() && !Widget->GetToolTipText().IsEmpty())
		{
			return Widget;
		}
	}
	return nullptr;
}
}

void FToolTipPresenter::Tick(
	const TArray<TWeakPtr<SWidget>>& Hovered, const TSharedPtr<SWidget>& Focused, const FVector2D& Pointer)
{
	TSharedPtr<SWidget> NewSource = ToolTipPresenter::FindSource(Hovered);
	FSlateRect Anchor(Pointer, Pointer + FVector2D(0.0, ToolTipPresenter::PointerHeight));
	if (!NewSource.IsValid() && Focused.IsValid() && !Focused->GetToolTipText().IsEmpty())
	{
		NewSource = Focused;
		Anchor = Focused->GetCachedGeometry().GetLayoutBoundingRect();
	}
	const double Now = FSlateApplication::Get().GetCurrentTime();
	if (NewSource != Source.Pin())
	{
		Hide();
		Source = NewSource;
		RestsSince = Now;
		bIsDismissed = false;
	}
	const bool bIsDue = NewSource.IsValid() && !bIsDismissed && Now - RestsSince >= ToolTipPresenter::DelaySeconds;
	if (bIsDue && !Shown.IsValid())
	{
		Show(NewSource.ToSharedRef(), NewSource->GetToolTipText(), Anchor);
	}
}

void FToolTipPresenter::Show(const TSharedRef<SWidget>& InSource, const FText& Text, const FSlateRect& Anchor)
{
	Window = FSlateApplication::Get().FindWidgetWindow(InSource);
	if (!Window.IsValid())
	{
		return;
	}
	// clang-format off
	Shown =
		SNew(SPopup)
		.Visibility(EVisibility::HitTestInvisible)
		.Anchor(Anchor)
		[
			SNew(SBorder)
			.BorderImage(FAppStyle::GetBrush("ToolTip.Background"))
			.Padding(8.0f, 4.0f)
			[
				SNew(STextBlock).Text(Text).WrapTextAt(ToolTipPresenter::LongestLine)
			]
		];
	// clang-format on
	Window.Pin()->AddOverlaySlot(ToolTipPresenter::ZOrder)[Shown.ToSharedRef()];
}

void FToolTipPresenter::Dismiss(const TArray<TWeakPtr<SWidget>>& Hovered)
{
	Hide();
	// The pointer may have come here since the last tick: who clicks at once wants to see no tip either.
	Source = ToolTipPresenter::FindSource(Hovered);
	bIsDismissed = true;
}

void FToolTipPresenter::Hide()
{
	const TSharedPtr<SWindow> Pinned = Window.Pin();
	if (Shown.IsValid() && Pinned.IsValid())
	{
		Pinned->RemoveOverlaySlot(Shown.ToSharedRef());
	}
	Shown.Reset();
}
