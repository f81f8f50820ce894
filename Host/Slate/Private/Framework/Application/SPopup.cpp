#include "Framework/Application/SPopup.h"

#include "Framework/Application/SlateApplication.h"

namespace Popup
{
/** Where a content of this size is put, in a window of that size. All in the window's space. */
static FVector2D FindPlace(
	const FSlateRect& Anchor, const FVector2D& Size, const FVector2D& WindowSize, EMenuPlacement Placement)
{
	FVector2D Place(Anchor.Left, Anchor.Bottom);
	if (Placement == MenuPlacement_MenuRight)
	{
		const bool bFits = Anchor.Right + Size.X <= WindowSize.X;
		Place = FVector2D(bFits ? Anchor.Right : Anchor.Left - Size.X, Anchor.Top);
	}
	else if (Placement == MenuPlacement_AboveAnchor)
	{
		const bool bFits = Size.Y <= Anchor.Top || Anchor.Top > WindowSize.Y - Anchor.Bottom;
		Place.Y = bFits ? Anchor.Top - Size.Y : Anchor.Bottom;
	}
	else if (Place.Y + Size.Y > WindowSize.Y && Anchor.Top > WindowSize.Y - Anchor.Bottom)
	{
		Place.Y = Anchor.Top - Size.Y;
	}
	Place.X = FMath::Max(FMath::Min(Place.X, WindowSize.X - Size.X), 0.0);
	Place.Y = FMath::Max(FMath::Min(Place.Y, WindowSize.Y - Size.Y), 0.0);
	return Place;
}

/** A menu in which nothing can have the focus is not on its way, but knows its neighbours all the same. */
static FReply OfferKey(const TSharedRef<SWidget>& Widget, const FGeometry& Geometry, const FKeyEvent& KeyEvent)
{
	FReply Reply = Widget->OnPreviewKeyDown(Geometry, KeyEvent);
	FChildren* const Children = Widget->GetChildren();
	for (int32 Index = 0; Index < Children->Num() && !Reply.IsEventHandled(); ++Index)
	{
		Reply = OfferKey(Children->GetChildAt(Index), Geometry, KeyEvent);
	}
	return Reply;
}
}

void SPopup::Construct(const FArguments& InArgs)
{
	Anchor = InArgs._Anchor;
	Placement = InArgs._Placement;
	bIsMenu = InArgs._IsMenu;
	ChildSlot[InArgs._Content.Widget];
}

void SPopup::OnArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const
{
	const FSlateRect Absolute = Anchor.Get(FSlateRect());
	const FSlateRect Local(AllottedGeometry.AbsoluteToLocal(Absolute.GetTopLeft()),
		AllottedGeometry.AbsoluteToLocal(FVector2D(Absolute.Right, Absolute.Bottom)));
	const TSharedRef<SWidget>& Content = ChildSlot.GetWidget();
	const FVector2D WindowSize = AllottedGeometry.GetLocalSize();
	FVector2D Size = Content->GetDesiredSize();
	if (Placement == MenuPlacement_ComboBox)
	{
		Size.X = FMath::Max(Size.X, Local.GetSize().X);
	}
	Size = FVector2D(FMath::Min(Size.X, WindowSize.X), FMath::Min(Size.Y, WindowSize.Y));
	const FVector2D Place = Popup::FindPlace(Local, Size, WindowSize, Placement);
	ArrangedChildren.AddWidget(
		FArrangedWidget(Content, AllottedGeometry.MakeChild(Size, FSlateLayoutTransform(Place))));
}

FReply SPopup::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	if (!bIsMenu)
	{
		return FReply::Unhandled();
	}
	if (Key == EKeys::Escape)
	{
		FSlateApplication::Get().DismissMenuByWidget(AsShared());
		return FReply::Handled();
	}
	if (Key == EKeys::Down || Key == EKeys::Up)
	{
		return FReply::Handled().SetNavigation(Key == EKeys::Down ? EUINavigation::Next : EUINavigation::Previous);
	}
	const FReply Reply =
		HasKeyboardFocus() ? Popup::OfferKey(ChildSlot.GetWidget(), MyGeometry, InKeyEvent) : FReply::Unhandled();
	return Reply.IsEventHandled() ? Reply : SCompoundWidget::OnKeyDown(MyGeometry, InKeyEvent);
}
