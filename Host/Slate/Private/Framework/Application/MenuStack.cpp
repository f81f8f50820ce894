#include "Framework/Application/MenuStack.h"

#include "Framework/Application/SPopup.h"
#include "Framework/Application/SlateApplication.h"

namespace MenuStack
{
// Tool tips lie above.
constexpr int32 ZOrder = 10;

static FSlateRect GetAnchor(TWeakPtr<SWidget> Summoner)
{
	const TSharedPtr<SWidget> Pinned = Summoner.Pin();
	return Pinned.IsValid() ? Pinned->GetCachedGeometry().GetLayoutBoundingRect() : FSlateRect();
}
}

TSharedPtr<SPopup> FMenuStack::Push(const TSharedRef<SWidget>& Summoner, const TSharedRef<SWidget>& Content,
	EMenuPlacement Placement, bool bFocus, const FSimpleDelegate& OnDismissed)
{
	const TWeakPtr<SWidget> WeakSummoner = Summoner;
	return PushAt(MakeAttributeLambda([WeakSummoner] { return MenuStack::GetAnchor(WeakSummoner); }), Summoner, Content,
		Placement, bFocus, OnDismissed);
}

TSharedPtr<SPopup> FMenuStack::PushAt(const TAttribute<FSlateRect>& Anchor, const TSharedRef<SWidget>& Summoner,
	const TSharedRef<SWidget>& Content, EMenuPlacement Placement, bool bFocus, const FSimpleDelegate& OnDismissed)
{
	DismissFrom(FindContaining(Summoner) + 1);
	FSlateApplication& Application = FSlateApplication::Get();
	const TSharedPtr<SWindow> Window = Application.FindWidgetWindow(Summoner);
	if (!Window.IsValid())
	{
		return nullptr;
	}
	// clang-format off
	const TSharedRef<SPopup> Popup =
		SNew(SPopup)
		.Anchor(Anchor)
		.Placement(Placement)
		.IsMenu(true)
		.AccessibleText(INVTEXT("Menu"))
		[
			Content
		];
	// clang-format on
	Menus.Add(FMenu{ Popup, Window, Application.GetKeyboardFocusedWidget(), OnDismissed });
	Window->AddOverlaySlot(MenuStack::ZOrder)[Popup];
	// The focus may go into the menu before the next frame, and must pass over what cannot be chosen.
	Popup->SlatePrepass();
	if (bFocus)
	{
		Application.SetKeyboardFocus(Popup, EFocusCause::SetDirectly);
	}
	return Popup;
}

int32 FMenuStack::FindContaining(const TSharedPtr<const SWidget>& Widget) const
{
	for (TSharedPtr<const SWidget> Current = Widget; Current.IsValid(); Current = Current->GetParentWidget())
	{
		const int32 Index =
			Menus.IndexOfByPredicate([&Current](const FMenu& Menu) { return &Menu.Popup.Get() == Current.Get(); });
		if (Index != INDEX_NONE)
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

TSharedPtr<SWidget> FMenuStack::FindMenuIn(const TArray<TSharedRef<SWidget>>& Path) const
{
	const int32 Index = Path.Num() > 0 ? FindContaining(Path.Last()) : INDEX_NONE;
	return Index != INDEX_NONE ? TSharedPtr<SWidget>(Menus[Index].Popup) : nullptr;
}

void FMenuStack::OnPointerDown(const TArray<TSharedRef<SWidget>>& PathUnderPointer)
{
	const TSharedPtr<const SWidget> Hit = PathUnderPointer.Num() > 0 ? PathUnderPointer.Last().ToSharedPtr() : nullptr;
	DismissFrom(FindContaining(Hit) + 1);
}

void FMenuStack::DismissContaining(const TSharedRef<const SWidget>& Widget)
{
	const int32 Index = FindContaining(Widget);
	if (Index != INDEX_NONE)
	{
		DismissFrom(Index);
	}
}

void FMenuStack::DismissFrom(int32 Index)
{
	while (Menus.Num() > Index)
	{
		DismissLast();
	}
}

void FMenuStack::DismissLast()
{
	const FMenu Menu = Menus.Last();
	Menus.RemoveAt(Menus.Num() - 1);
	const bool bHadFocus = Menu.Popup->HasKeyboardFocus() || Menu.Popup->HasFocusedDescendants();
	const TSharedPtr<SWindow> Window = Menu.Window.Pin();
	if (Window.IsValid())
	{
		Window->RemoveOverlaySlot(Menu.Popup);
	}
	const TSharedPtr<SWidget> FocusedBefore = Menu.FocusedBefore.Pin();
	if (bHadFocus && FocusedBefore.IsValid())
	{
		FSlateApplication::Get().SetKeyboardFocus(FocusedBefore, EFocusCause::OtherWidgetLostFocus);
	}
	Menu.OnDismissed.ExecuteIfBound();
}
