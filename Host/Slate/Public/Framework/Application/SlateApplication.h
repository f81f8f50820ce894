#pragma once

#include "Application/SlateApplicationBase.h"
#include "CoreMinimal.h"
#include "GenericPlatform/GenericApplication.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/Geometry.h"
#include "Widgets/SWindow.h"

class FDragDropTracker;
class FGenericWindow;
class FGlobalTabmanager;
class FMenuStack;
class FWidgetPath;
class FToolTipPresenter;
class IMenu;
class ITextCompositionTarget;
struct FPopupTransitionEffect;

/** A key that no widget has handled. */
DECLARE_DELEGATE_RetVal_OneParam(FReply, FOnKeyEvent, const FKeyEvent&);

/** Widgets from a window down to the one an event is about. */
using FSlateWidgetPath = TArray<TSharedRef<SWidget>>;

/**
 * The application: its windows, the keyboard focus, and the way of each event to its widget.
 *
 * A key press goes from the window down to the focused widget as OnPreviewKeyDown, then back up as OnKeyDown, until a
 * widget has handled it; widgets that are disabled are left out. A pointer event goes up from the innermost widget that
 * is hit, and begins above a disabled one. What a reply asks for is done after the widget's function has returned.
 *
 * Game thread only.
 */
class FSlateApplication final : public FSlateApplicationBase
{
public:
	/** Host: starts an application without a keyboard, a mouse and windows of its own. */
	static TSharedRef<FSlateApplication> Create();
	static TSharedRef<FSlateApplication> Create(const TSharedRef<GenericApplication>& InPlatformApplication);
	/** Closes all windows without asking. */
	static void Shutdown();
	/** Asserts that there is one. */
	static FSlateApplication& Get();

	virtual ~FSlateApplication() override;

	/**
	 * Replaces the renderer, which draws nothing to begin with, and loads the images of all registered styles. Asserts
	 * that there is no window yet.
	 */
	bool InitializeRenderer(TSharedRef<FSlateRenderer> InRenderer);

	/** One frame: takes the time, asks bound attributes, lays out and paints all windows. */
	void Tick(ESlateTickType TickType = ESlateTickType::All);
	/**
	 * Host: when the first of the active timers that were in view in the last frame is due, in seconds of the
	 * application's time; unset if there are none.
	 */
	TOptional<double> GetNextTimerTime() const;

	TSharedRef<SWindow> AddWindow(TSharedRef<SWindow> InSlateWindow, const bool bShowImmediately = true);
	/** Closes it, unless its owner wants to be asked instead. */
	void RequestDestroyWindow(TSharedRef<SWindow> WindowToDestroy);
	const TArray<TSharedRef<SWindow>>& GetTopLevelWindows() const { return Windows; }
	/** Null for a widget that is in no window of this application. */
	TSharedPtr<SWindow> FindWidgetWindow(TSharedRef<const SWidget> InWidget) const;

	/** False, and nothing changes, for a widget that is not shown in a window or does not take the focus. */
	virtual bool SetKeyboardFocus(const TSharedPtr<SWidget>& OptionalWidgetToFocus,
		EFocusCause ReasonFocusIsChanging = EFocusCause::SetDirectly) override;
	void ClearKeyboardFocus(const EFocusCause ReasonFocusIsChanging = EFocusCause::SetDirectly);
	virtual TSharedPtr<SWidget> GetKeyboardFocusedWidget() const override;
	virtual EFocusCause GetKeyboardFocusCause() const override { return FocusCause; }
	/** The keys that are down now; a synthetic event does not change them. */
	virtual FModifierKeysState GetModifierKeys() const override { return PlatformApplication->GetModifierKeys(); }
	virtual bool HasMouseCapture(const TSharedRef<const SWidget>& Widget) const override;
	virtual bool IsWidgetHovered(const SWidget& Widget) const override;
	/** For a widget that has just received the focus and keeps it. */
	void SetTextCompositionTarget(const TSharedRef<SWidget>& Owner, ITextCompositionTarget& Target);
	/** Null unless its widget has the focus. */
	ITextCompositionTarget* GetTextCompositionTarget() const;
	/** What the pointer should look like where it last was. */
	EMouseCursor::Type GetCursorUnderPointer() const;

	/** Whether one of the windows is the one that the user works in, as far as the platform has said. */
	virtual bool IsActive() const { return bIsActive; }
	/** What the platform, or a test, says. */
	void ProcessApplicationActivationEvent(bool bInAppActivated) { bIsActive = bInAppActivated; }

	// What the platform, or a test, sends in. True if a widget has handled it.
	bool ProcessKeyDownEvent(const FKeyEvent& InKeyEvent);
	bool ProcessKeyUpEvent(const FKeyEvent& InKeyEvent);
	/** Typed characters, which come after the key press: also control characters such as 8 for backspace. */
	bool ProcessKeyCharEvent(const FCharacterEvent& InCharacterEvent);
	/** What an input method composes, see ITextCompositionTarget. */
	bool ProcessTextComposition(const FString& Text, int32 CursorOffset);
	bool ProcessMouseButtonDownEvent(
		const TSharedPtr<FGenericWindow>& PlatformWindow, const FPointerEvent& InMouseEvent);
	bool ProcessMouseButtonUpEvent(const FPointerEvent& InMouseEvent);
	/** The second press at the same place, in the stead of ProcessMouseButtonDownEvent. */
	bool ProcessMouseButtonDoubleClickEvent(
		const TSharedPtr<FGenericWindow>& InPlatformWindow, const FPointerEvent& InMouseEvent);
	bool ProcessMouseMoveEvent(const FPointerEvent& InMouseEvent, bool bIsSynthetic = false);
	bool ProcessMouseWheelOrGestureEvent(const FPointerEvent& InWheelEvent, const FPointerEvent* InGestureEvent);

	/** Something from another program was dropped. */
	bool ProcessDropEvent(const FDragDropEvent& InDragDropEvent);

	bool IsDragDropping() const;
	/** Nobody gets what is dragged. */
	void CancelDragDrop();

	/** Host: the key of the last press, whoever has handled it. */
	const FKey& GetLastPressedKey() const { return LastPressedKey; }
	/** Gets the keys that no widget has handled, also while nothing has the focus. There is one such handler. */
	void SetUnhandledKeyDownEventHandler(const FOnKeyEvent& NewHandler) { UnhandledKeyDownHandler = NewHandler; }
	void SetUnhandledKeyUpEventHandler(const FOnKeyEvent& NewHandler) { UnhandledKeyUpHandler = NewHandler; }

	/**
	 * Opens a menu in the window of a widget.
	 *
	 * @param SummonLocation     of its corner, in absolute space
	 * @param bFocusImmediately  whether it takes the keyboard focus
	 * @return null for a widget that is in no window
	 */
	TSharedPtr<IMenu> PushMenu(const TSharedRef<SWidget>& InParentWidget, const FWidgetPath& InOwnerPath,
		const TSharedRef<SWidget>& InContent, const FVector2D& SummonLocation,
		const FPopupTransitionEffect& TransitionEffect, const bool bFocusImmediately = true);
	void DismissAllMenus();
	/** Closes the menu that the widget is in, with those that were opened from it. */
	void DismissMenuByWidget(const TSharedRef<SWidget>& InWidgetInMenu);
	bool AnyMenusVisible() const;
	/** Host: for SMenuAnchor. */
	FMenuStack& GetMenuStack() { return *MenuStack; }

	/** Does what a reply asks for that was given outside of an event. */
	void ProcessExternalReply(const TSharedRef<SWidget>& Widget, const FReply& Reply);
	/** The widget that a pointer event at this place of the screen goes to, with its parents; may be empty. */
	FSlateWidgetPath LocateWidgetsUnder(const FVector2D& ScreenPosition) const;

private:
	FSlateApplication(const TSharedRef<GenericApplication>& InPlatformApplication);
	static FSlateApplication*& Instance();

	void TickTime();
	void TickWidgets();
	void DrawWindow(const TSharedRef<SWindow>& Window);

	/** Empty if one of the widgets is hidden, or the topmost is not one of the windows. */
	FSlateWidgetPath FindPathTo(const TSharedPtr<SWidget>& Widget) const;
	/** After something was removed or hidden, the focus moves to the nearest parent that can have it. */
	void KeepFocusOnShownWidget();
	void SetFocusTo(const TSharedPtr<SWidget>& Widget, EFocusCause Cause);
	FSlateWidgetPath GetFocusPath();
	void Navigate(EUINavigation Direction);
	TSharedRef<SWidget> FindNavigationRoot(const TSharedRef<SWidget>& Focused, const TSharedRef<SWindow>& Window);
	bool RouteButtonDown(const FPointerEvent& InMouseEvent, const TFunction<FReply(SWidget&)>& SendTo);
	void PaintFocusRectangle(
		const TSharedRef<SWindow>& Window, FSlateWindowElementList& OutDrawElements, int32 LayerId);
	void FocusInnermost(const FSlateWidgetPath& Path);
	void ProcessReply(const FReply& Reply);
	/** Asks the widgets from the last to the first of a path. */
	FReply RouteUpwards(const FSlateWidgetPath& Path, const TFunction<FReply(SWidget&)>& SendTo);
	FReply RoutePointerEvent(const FPointerEvent& Event, const TFunction<FReply(SWidget&)>& SendTo);

	const TSharedRef<GenericApplication> PlatformApplication;
	TArray<TSharedRef<SWindow>> Windows; // the last lies in front
	TArray<TWeakPtr<SWidget>> FocusPath; // from the window down; empty without focus
	EFocusCause FocusCause = EFocusCause::Cleared;
	bool bIsActive = true;
	TWeakPtr<SWidget> MouseCaptor;
	TArray<TWeakPtr<SWidget>> HoverPath;
	FVector2D PointerPosition = FVector2D(0.0, 0.0);
	TWeakPtr<SWidget> CompositionOwner;
	ITextCompositionTarget* CompositionTarget = nullptr; // alive as long as its owner
	FKey LastPressedKey;
	FOnKeyEvent UnhandledKeyDownHandler;
	FOnKeyEvent UnhandledKeyUpHandler;
	const TUniquePtr<FMenuStack> MenuStack;
	const TUniquePtr<FDragDropTracker> DragDrop;
	const TUniquePtr<FToolTipPresenter> ToolTips;
	double NextTimerTime = 0.0; // far in the future without timers
};
