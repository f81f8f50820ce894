#include "Framework/Application/SlateApplication.h"

#include "Framework/Application/DragDropTracker.h"
#include "Framework/Application/MenuStack.h"
#include "Framework/Application/ToolTipPresenter.h"
#include "Framework/Text/TextComposition.h"
#include "Widgets/Layout/SScrollBox.h"

namespace SlateApplicationInput
{

/** The innermost widget at a place and its parents below Widget, appended to OutPath; false if Widget is not hit. */
static bool HitTest(const FArrangedWidget& Arranged, const FVector2D& Position, FSlateWidgetPath& OutPath)
{
	const EVisibility Visibility = Arranged.Widget->GetVisibility();
	if (!Arranged.Geometry.IsUnderLocation(Position))
	{
		return false;
	}
	OutPath.Add(Arranged.Widget);
	if (Visibility.AreChildrenHitTestVisible())
	{
		FArrangedChildren Children(EVisibility::Visible);
		Arranged.Widget->ArrangeChildren(Arranged.Geometry, Children);
		for (int32 Index = Children.Num() - 1; Index >= 0; --Index)
		{
			if (HitTest(Children[Index], Position, OutPath))
			{
				return true;
			}
		}
	}
	if (Visibility.IsHitTestVisible())
	{
		return true;
	}
	OutPath.RemoveAt(OutPath.Num() - 1);
	return false;
}

static void CollectFocusable(const TSharedRef<SWidget>& Widget, TArray<TSharedRef<SWidget>>& OutWidgets);

static void CollectFocusableBelow(const TSharedRef<SWidget>& Widget, TArray<TSharedRef<SWidget>>& OutWidgets)
{
	FChildren& Children = *Widget->GetChildren();
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		CollectFocusable(Children.GetChildAt(Index), OutWidgets);
	}
}

static void CollectFocusable(const TSharedRef<SWidget>& Widget, TArray<TSharedRef<SWidget>>& OutWidgets)
{
	if (!Widget->GetVisibility().IsVisible() || !Widget->IsEnabled())
	{
		return;
	}
	if (Widget->SupportsKeyboardFocus())
	{
		OutWidgets.Add(Widget);
	}
	CollectFocusableBelow(Widget, OutWidgets);
}

/** Who goes on with the keyboard sees where they are. */
static void Reveal(const TSharedRef<SWidget>& Widget)
{
	for (TSharedPtr<SWidget> Parent = Widget->GetParentWidget(); Parent.IsValid(); Parent = Parent->GetParentWidget())
	{
		if (Parent->GetType() == FName("SScrollBox"))
		{
			StaticCastSharedPtr<SScrollBox>(Parent)->ScrollDescendantIntoView(Widget);
		}
	}
}

static bool CallHandler(const FOnKeyEvent& Handler, const FKeyEvent& Event)
{
	return Handler.IsBound() && Handler.Execute(Event).IsEventHandled();
}

}

FSlateWidgetPath FSlateApplication::LocateWidgetsUnder(const FVector2D& ScreenPosition) const
{
	FSlateWidgetPath Path;
	for (int32 Index = Windows.Num() - 1; Index >= 0 && Path.Num() == 0; --Index)
	{
		const TSharedRef<SWindow>& Window = Windows[Index];
		if (!Window->IsWindowMinimized() && Window->GetVisibility().IsVisible())
		{
			SlateApplicationInput::HitTest(
				FArrangedWidget(Window, Window->GetWindowGeometryInScreen()), ScreenPosition, Path);
		}
	}
	return Path;
}

FReply FSlateApplication::RouteUpwards(const FSlateWidgetPath& Path, const TFunction<FReply(SWidget&)>& SendTo)
{
	for (int32 Index = Path.Num() - 1; Index >= 0; --Index)
	{
		if (!Path[Index]->IsEnabled())
		{
			continue;
		}
		FReply Reply = SendTo(Path[Index].Get());
		if (Reply.IsEventHandled())
		{
			Reply.SetHandler(Path[Index]);
			ProcessReply(Reply);
			return Reply;
		}
	}
	return FReply::Unhandled();
}

bool FSlateApplication::ProcessKeyDownEvent(const FKeyEvent& InKeyEvent)
{
	ToolTips->Dismiss(HoverPath);
	LastPressedKey = InKeyEvent.GetKey();
	if (InKeyEvent.GetKey() == EKeys::Escape && IsDragDropping())
	{
		CancelDragDrop();
		return true;
	}
	const FSlateWidgetPath Path = GetFocusPath();
	for (const TSharedRef<SWidget>& Widget : Path)
	{
		if (!Widget->IsEnabled())
		{
			continue;
		}
		const FReply Reply = Widget->OnPreviewKeyDown(Widget->GetCachedGeometry(), InKeyEvent);
		if (Reply.IsEventHandled())
		{
			ProcessReply(Reply);
			return true;
		}
	}
	const FReply Reply = RouteUpwards(
		Path, [&InKeyEvent](SWidget& Widget) { return Widget.OnKeyDown(Widget.GetCachedGeometry(), InKeyEvent); });
	return Reply.IsEventHandled() || SlateApplicationInput::CallHandler(UnhandledKeyDownHandler, InKeyEvent);
}

bool FSlateApplication::ProcessKeyUpEvent(const FKeyEvent& InKeyEvent)
{
	const FReply Reply = RouteUpwards(GetFocusPath(),
		[&InKeyEvent](SWidget& Widget) { return Widget.OnKeyUp(Widget.GetCachedGeometry(), InKeyEvent); });
	return Reply.IsEventHandled() || SlateApplicationInput::CallHandler(UnhandledKeyUpHandler, InKeyEvent);
}

bool FSlateApplication::ProcessKeyCharEvent(const FCharacterEvent& InCharacterEvent)
{
	return RouteUpwards(GetFocusPath(), [&InCharacterEvent](SWidget& Widget) {
		return Widget.OnKeyChar(Widget.GetCachedGeometry(), InCharacterEvent);
	}).IsEventHandled();
}

void FSlateApplication::SetTextCompositionTarget(const TSharedRef<SWidget>& Owner, ITextCompositionTarget& Target)
{
	CompositionOwner = Owner;
	CompositionTarget = &Target;
}

ITextCompositionTarget* FSlateApplication::GetTextCompositionTarget() const
{
	const TSharedPtr<SWidget> Owner = CompositionOwner.Pin();
	return Owner.IsValid() && Owner == GetKeyboardFocusedWidget() ? CompositionTarget : nullptr;
}

bool FSlateApplication::ProcessTextComposition(const FString& Text, int32 CursorOffset)
{
	ITextCompositionTarget* const Target = GetTextCompositionTarget();
	if (Target)
	{
		Target->SetComposition(Text, CursorOffset);
	}
	return Target != nullptr;
}

FReply FSlateApplication::RoutePointerEvent(const FPointerEvent& Event, const TFunction<FReply(SWidget&)>& SendTo)
{
	const TSharedPtr<SWidget> Captor = MouseCaptor.Pin();
	if (Captor.IsValid())
	{
		return RouteUpwards({ Captor.ToSharedRef() }, SendTo);
	}
	FSlateWidgetPath Path = LocateWidgetsUnder(Event.GetScreenSpacePosition());
	const int32 FirstDisabled =
		Path.IndexOfByPredicate([](const TSharedRef<SWidget>& Widget) { return !Widget->IsEnabled(); });
	while (FirstDisabled != INDEX_NONE && Path.Num() > FirstDisabled)
	{
		Path.RemoveAt(Path.Num() - 1);
	}
	return RouteUpwards(Path, SendTo);
}

bool FSlateApplication::ProcessMouseButtonDownEvent(
	const TSharedPtr<FGenericWindow>& PlatformWindow, const FPointerEvent& InMouseEvent)
{
	return RouteButtonDown(InMouseEvent, [&InMouseEvent](SWidget& Widget) {
		return Widget.OnMouseButtonDown(Widget.GetCachedGeometry(), InMouseEvent);
	});
}

bool FSlateApplication::ProcessMouseButtonDoubleClickEvent(
	const TSharedPtr<FGenericWindow>& InPlatformWindow, const FPointerEvent& InMouseEvent)
{
	return RouteButtonDown(InMouseEvent, [&InMouseEvent](SWidget& Widget) {
		return Widget.OnMouseButtonDoubleClick(Widget.GetCachedGeometry(), InMouseEvent);
	});
}

bool FSlateApplication::RouteButtonDown(const FPointerEvent& InMouseEvent, const TFunction<FReply(SWidget&)>& SendTo)
{
	ToolTips->Dismiss(HoverPath);
	if (!MouseCaptor.IsValid())
	{
		MenuStack->OnPointerDown(LocateWidgetsUnder(InMouseEvent.GetScreenSpacePosition()));
	}
	const TSharedPtr<SWidget> FocusedBefore = GetKeyboardFocusedWidget();
	const FSlateWidgetPath Path = LocateWidgetsUnder(InMouseEvent.GetScreenSpacePosition());
	const FReply Reply = RoutePointerEvent(InMouseEvent, SendTo);
	const bool bFocusWasMoved = Reply.GetUserFocusRecepient().IsValid() || Reply.ShouldReleaseUserFocus() ||
								GetKeyboardFocusedWidget() != FocusedBefore;
	if (!bFocusWasMoved)
	{
		FocusInnermost(Path);
	}
	if (Reply.GetDetectDragRequest().IsValid())
	{
		DragDrop->Watch(Reply.GetDetectDragRequest().ToSharedRef(), Reply.GetDetectDragRequestButton(), InMouseEvent);
	}
	return Reply.IsEventHandled();
}

void FSlateApplication::FocusInnermost(const FSlateWidgetPath& Path)
{
	const int32 FirstDisabled =
		Path.IndexOfByPredicate([](const TSharedRef<SWidget>& Widget) { return !Widget->IsEnabled(); });
	for (int32 Index = (FirstDisabled == INDEX_NONE ? Path.Num() : FirstDisabled) - 1; Index >= 0; --Index)
	{
		if (Path[Index]->SupportsKeyboardFocus())
		{
			SetKeyboardFocus(Path[Index], EFocusCause::Mouse);
			return;
		}
	}
}

bool FSlateApplication::ProcessMouseButtonUpEvent(const FPointerEvent& InMouseEvent)
{
	DragDrop->StopWatching();
	if (IsDragDropping())
	{
		return DragDrop->Drop(InMouseEvent, LocateWidgetsUnder(InMouseEvent.GetScreenSpacePosition()));
	}
	return RoutePointerEvent(InMouseEvent, [&InMouseEvent](SWidget& Widget) {
		return Widget.OnMouseButtonUp(Widget.GetCachedGeometry(), InMouseEvent);
	}).IsEventHandled();
}

bool FSlateApplication::ProcessMouseMoveEvent(const FPointerEvent& InMouseEvent, bool bIsSynthetic)
{
	PointerPosition = InMouseEvent.GetScreenSpacePosition();
	HoverPath = TArray<TWeakPtr<SWidget>>(LocateWidgetsUnder(InMouseEvent.GetScreenSpacePosition()));
	if (const TSharedPtr<SWidget> Dragged = DragDrop->TakeDetected(InMouseEvent))
	{
		ProcessReply(Dragged->OnDragDetected(Dragged->GetCachedGeometry(), DragDrop->GetPress()));
	}
	if (IsDragDropping())
	{
		DragDrop->Move(InMouseEvent, LocateWidgetsUnder(InMouseEvent.GetScreenSpacePosition()));
		return true;
	}
	return RoutePointerEvent(InMouseEvent, [&InMouseEvent](SWidget& Widget) {
		return Widget.OnMouseMove(Widget.GetCachedGeometry(), InMouseEvent);
	}).IsEventHandled();
}

bool FSlateApplication::ProcessMouseWheelOrGestureEvent(
	const FPointerEvent& InWheelEvent, const FPointerEvent* InGestureEvent)
{
	return RoutePointerEvent(InWheelEvent, [&InWheelEvent](SWidget& Widget) {
		return Widget.OnMouseWheel(Widget.GetCachedGeometry(), InWheelEvent);
	}).IsEventHandled();
}

bool FSlateApplication::ProcessDropEvent(const FDragDropEvent& InDragDropEvent)
{
	CancelDragDrop();
	const TSharedPtr<FDragDropOperation> Operation = InDragDropEvent.GetOperation();
	if (!Operation.IsValid())
	{
		return false;
	}
	const FSlateWidgetPath Path = LocateWidgetsUnder(InDragDropEvent.GetScreenSpacePosition());
	DragDrop->Begin(Operation.ToSharedRef());
	DragDrop->Move(InDragDropEvent, Path);
	return DragDrop->Drop(InDragDropEvent, Path);
}

bool FSlateApplication::IsDragDropping() const
{
	return DragDrop->GetContent().IsValid();
}

void FSlateApplication::CancelDragDrop()
{
	DragDrop->Cancel();
}

void FSlateApplication::ProcessReply(const FReply& Reply)
{
	if (Reply.ShouldReleaseMouse())
	{
		MouseCaptor.Reset();
	}
	if (Reply.GetMouseCaptor().IsValid())
	{
		MouseCaptor = Reply.GetMouseCaptor();
	}
	if (Reply.GetDragDropContent().IsValid())
	{
		if (const TSharedPtr<SWidget> Captor = MouseCaptor.Pin())
		{
			MouseCaptor.Reset();
			Captor->OnMouseCaptureLost(FCaptureLostEvent());
		}
		DragDrop->Begin(Reply.GetDragDropContent().ToSharedRef());
	}
	if (Reply.ShouldReleaseUserFocus())
	{
		ClearKeyboardFocus(Reply.GetFocusCause());
	}
	if (Reply.GetUserFocusRecepient().IsValid())
	{
		SetKeyboardFocus(Reply.GetUserFocusRecepient(), Reply.GetFocusCause());
	}
	if (Reply.GetNavigationType() != EUINavigation::Invalid)
	{
		Navigate(Reply.GetNavigationType());
	}
}

void FSlateApplication::ProcessExternalReply(const TSharedRef<SWidget>& Widget, const FReply& Reply)
{
	ProcessReply(Reply);
}

/** Inside a menu the focus stays there; elsewhere it does not go into one. */
TSharedRef<SWidget> FSlateApplication::FindNavigationRoot(
	const TSharedRef<SWidget>& Focused, const TSharedRef<SWindow>& Window)
{
	const TSharedPtr<SWidget> Menu = MenuStack->FindMenuIn(FindPathTo(Focused));
	return Menu.IsValid() ? Menu.ToSharedRef() : Window;
}

void FSlateApplication::Navigate(EUINavigation Direction)
{
	const TSharedPtr<SWidget> Current = GetKeyboardFocusedWidget();
	const TSharedPtr<SWindow> Window = Current.IsValid() ? FindWidgetWindow(Current.ToSharedRef()) : nullptr;
	if (!Window.IsValid())
	{
		return;
	}
	TArray<TSharedRef<SWidget>> Focusable;
	SlateApplicationInput::CollectFocusableBelow(
		FindNavigationRoot(Current.ToSharedRef(), Window.ToSharedRef()), Focusable);
	// A parent that hands its focus on to a child would hold the user in itself for ever.
	const FSlateWidgetPath Path = FindPathTo(Current);
	Focusable.RemoveAll(
		[&](const TSharedRef<SWidget>& Widget) { return Widget != Current.ToSharedRef() && Path.Contains(Widget); });
	const int32 Index = Focusable.IndexOfByKey(Current.ToSharedRef());
	if (Focusable.Num() == 0)
	{
		return;
	}
	const bool bNext = Direction == EUINavigation::Next;
	const int32 Step = bNext ? 1 : Focusable.Num() - 1;
	const int32 FirstIndex = bNext ? 0 : Focusable.Num() - 1;
	const int32 NewIndex = Index == INDEX_NONE ? FirstIndex : (Index + Step) % Focusable.Num();
	SetKeyboardFocus(Focusable[NewIndex], EFocusCause::Navigation);
	SlateApplicationInput::Reveal(Focusable[NewIndex]);
}
