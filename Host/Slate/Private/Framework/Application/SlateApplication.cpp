#include "Framework/Application/SlateApplication.h"

#include "Framework/Application/DragDropTracker.h"
#include "Framework/Application/IMenu.h"
#include "Framework/Application/MenuStack.h"
#include "Framework/Application/SPopup.h"
#include "Framework/Application/ToolTipPresenter.h"
#include "Framework/Docking/TabManager.h"
#include "HAL/PlatformTime.h"
#include "Layout/WidgetPath.h"
#include "Modules/ModuleManager.h"
#include "Rendering/DrawElements.h"
#include "Rendering/SlateNullRenderer.h"
#include "Styling/AppStyle.h"

#include <limits>

IMPLEMENT_MODULE(FDefaultModuleImpl, Slate)

namespace SlateApplication
{
constexpr double FocusMargin = 2.0; // Slate units
constexpr double Never = std::numeric_limits<double>::infinity();
}

FSlateApplication::FSlateApplication(const TSharedRef<GenericApplication>& InPlatformApplication)
	: PlatformApplication(InPlatformApplication)
	, MenuStack(MakeUnique<FMenuStack>())
	, DragDrop(MakeUnique<FDragDropTracker>())
	, ToolTips(MakeUnique<FToolTipPresenter>())
	, NextTimerTime(SlateApplication::Never)
{
	CurrentTime = FPlatformTime::Seconds();
	LastTickTime = CurrentTime;
	Renderer = MakeShared<FSlateNullRenderer>();
}

FSlateApplication::~FSlateApplication()
{
	Instance() = nullptr;
}

FSlateApplication*& FSlateApplication::Instance()
{
	static FSlateApplication* Application = nullptr;
	return Application;
}

TSharedRef<FSlateApplication> FSlateApplication::Create()
{
	return Create(MakeShared<GenericApplication>());
}

TSharedRef<FSlateApplication> FSlateApplication::Create(const TSharedRef<GenericApplication>& InPlatformApplication)
{
	checkf(!IsInitialized(), TEXT("There is a Slate application already"));
	const TSharedRef<FSlateApplication> Application = MakeShareable(new FSlateApplication(InPlatformApplication));
	Instance() = &Application.Get();
	SetCurrent(Application);
	Application->Renderer->ReloadTextureResources();
	return Application;
}

void FSlateApplication::Shutdown()
{
	if (IsInitialized())
	{
		Get().DismissAllMenus();
		Get().CancelDragDrop();
		Get().ToolTips->Dismiss(Get().HoverPath);
		// Widgets may ask for the application while they are destroyed.
		const TArray<TSharedRef<SWindow>> Closed = MoveTemp(Get().Windows);
		Get().Windows.Empty();
		Get().FocusPath.Empty();
		SetCurrent(nullptr);
	}
}

FSlateApplication& FSlateApplication::Get()
{
	checkf(IsInitialized(), TEXT("There is no Slate application: ask FSlateApplication::IsInitialized first"));
	return *Instance();
}

bool FSlateApplication::InitializeRenderer(TSharedRef<FSlateRenderer> InRenderer)
{
	checkf(Windows.Num() == 0, TEXT("The renderer measures text, so it must be there before the first window"));
	Renderer = InRenderer;
	Renderer->ReloadTextureResources();
	return true;
}

void FSlateApplication::Tick(ESlateTickType TickType)
{
	if (TickType != ESlateTickType::Widgets)
	{
		TickTime();
	}
	if (TickType != ESlateTickType::Time)
	{
		TickWidgets();
	}
}

void FSlateApplication::TickTime()
{
	LastTickTime = CurrentTime;
	CurrentTime = FPlatformTime::Seconds();
}

void FSlateApplication::TickWidgets()
{
	TArray<TSharedRef<SWindow>> ShownWindows;
	TArray<TSharedRef<SWidget>> Roots;
	for (const TSharedRef<SWindow>& Window : Windows)
	{
		if (!Window->IsWindowMinimized())
		{
			ShownWindows.Add(Window);
			Roots.Add(Window);
		}
	}
	SWidget::UpdateAllBoundAttributes(Roots);
	KeepFocusOnShownWidget();
	const bool bFocusedByKeys = FocusCause == EFocusCause::Navigation;
	ToolTips->Tick(HoverPath, bFocusedByKeys ? GetKeyboardFocusedWidget() : nullptr, PointerPosition);
	NextTimerTime = SlateApplication::Never;
	for (const TSharedRef<SWindow>& Window : ShownWindows)
	{
		DrawWindow(Window);
	}
}

void FSlateApplication::DrawWindow(const TSharedRef<SWindow>& Window)
{
	if (!Window->GetVisibility().IsVisible())
	{
		return;
	}
	Window->Prepass(1.0f);
	const FGeometry Geometry = Window->GetWindowGeometryInScreen();
	const FPaintArgs Args(CurrentTime, GetDeltaTime(), &NextTimerTime);
	FSlateWindowElementList DrawElements;
	const int32 TopLayer =
		Window->Paint(Args, Geometry, Geometry.GetLayoutBoundingRect(), DrawElements, 0, FWidgetStyle(), true);
	PaintFocusRectangle(Window, DrawElements, TopLayer + 1);
	Renderer->DrawWindow(Window, DrawElements);
}

void FSlateApplication::PaintFocusRectangle(
	const TSharedRef<SWindow>& Window, FSlateWindowElementList& OutDrawElements, int32 LayerId)
{
	const TSharedPtr<SWidget> Focused = GetKeyboardFocusedWidget();
	// With the mouse one knows where one is.
	if (FocusCause != EFocusCause::Navigation || FindPathTo(Focused).Num() == 0 ||
		FindWidgetWindow(Focused.ToSharedRef()) != Window)
	{
		return;
	}
	FSlateRect Clip = Window->GetWindowGeometryInScreen().GetLayoutBoundingRect();
	for (TSharedPtr<SWidget> Parent = Focused->GetParentWidget(); Parent.IsValid(); Parent = Parent->GetParentWidget())
	{
		if (Parent->GetClipping() == EWidgetClipping::ClipToBounds)
		{
			Clip = Clip.IntersectionWith(Parent->GetCachedGeometry().GetLayoutBoundingRect());
		}
	}
	const FSlateBrush* const Brush = FAppStyle::GetBrush("FocusRectangle");
	// A little outside, so that its line does not cross what is in the widget.
	const FGeometry& Geometry = Focused->GetCachedGeometry();
	const FVector2D Margin(SlateApplication::FocusMargin, SlateApplication::FocusMargin);
	const FGeometry Ring =
		Geometry.MakeChild(FVector2D(Geometry.GetLocalSize()) + Margin * 2.0, FSlateLayoutTransform(Margin * -1.0));
	FSlateDrawElement::MakeBox(OutDrawElements, LayerId, Ring, Clip, Brush, Brush->GetTint(FWidgetStyle()));
}

TOptional<double> FSlateApplication::GetNextTimerTime() const
{
	return NextTimerTime == SlateApplication::Never ? TOptional<double>() : TOptional<double>(NextTimerTime);
}

TSharedRef<SWindow> FSlateApplication::AddWindow(TSharedRef<SWindow> InSlateWindow, const bool bShowImmediately)
{
	Windows.AddUnique(InSlateWindow);
	return InSlateWindow;
}

void FSlateApplication::RequestDestroyWindow(TSharedRef<SWindow> WindowToDestroy)
{
	if (WindowToDestroy->GetRequestDestroyWindowOverride().IsBound())
	{
		WindowToDestroy->GetRequestDestroyWindowOverride().Execute(WindowToDestroy);
		return;
	}
	Windows.Remove(WindowToDestroy);
	KeepFocusOnShownWidget();
}

TSharedPtr<SWindow> FSlateApplication::FindWidgetWindow(TSharedRef<const SWidget> InWidget) const
{
	TSharedPtr<const SWidget> Top = InWidget;
	for (TSharedPtr<SWidget> Parent = Top->GetParentWidget(); Parent.IsValid(); Parent = Parent->GetParentWidget())
	{
		Top = Parent;
	}
	for (const TSharedRef<SWindow>& Window : Windows)
	{
		if (&Window.Get() == Top.Get())
		{
			return Window;
		}
	}
	return nullptr;
}

FSlateWidgetPath FSlateApplication::FindPathTo(const TSharedPtr<SWidget>& Widget) const
{
	FSlateWidgetPath Path;
	if (!Widget.IsValid() || !FindWidgetWindow(Widget.ToSharedRef()).IsValid())
	{
		return Path;
	}
	for (TSharedPtr<SWidget> Current = Widget; Current.IsValid(); Current = Current->GetParentWidget())
	{
		if (!Current->GetVisibility().IsVisible())
		{
			return FSlateWidgetPath();
		}
		Path.Insert(Current.ToSharedRef(), 0);
	}
	return Path;
}

bool FSlateApplication::SetKeyboardFocus(
	const TSharedPtr<SWidget>& OptionalWidgetToFocus, EFocusCause ReasonFocusIsChanging)
{
	if (!OptionalWidgetToFocus.IsValid())
	{
		ClearKeyboardFocus(ReasonFocusIsChanging);
		return true;
	}
	if (!OptionalWidgetToFocus->SupportsKeyboardFocus() || FindPathTo(OptionalWidgetToFocus).Num() == 0)
	{
		return false;
	}
	SetFocusTo(OptionalWidgetToFocus, ReasonFocusIsChanging);
	return true;
}

void FSlateApplication::ClearKeyboardFocus(const EFocusCause ReasonFocusIsChanging)
{
	SetFocusTo(nullptr, ReasonFocusIsChanging);
}

TSharedPtr<SWidget> FSlateApplication::GetKeyboardFocusedWidget() const
{
	return FocusPath.Num() > 0 ? FocusPath.Last().Pin() : nullptr;
}

void FSlateApplication::SetFocusTo(const TSharedPtr<SWidget>& Widget, EFocusCause Cause)
{
	const TSharedPtr<SWidget> Previous = GetKeyboardFocusedWidget();
	if (Previous == Widget)
	{
		FocusPath = TArray<TWeakPtr<SWidget>>(FindPathTo(Widget));
		return;
	}
	FocusPath = TArray<TWeakPtr<SWidget>>(FindPathTo(Widget));
	FocusCause = Cause;
	if (Previous.IsValid())
	{
		Previous->OnFocusLost(FFocusEvent(Cause, 0));
	}
	// Losing it may have moved it on.
	if (Widget.IsValid() && GetKeyboardFocusedWidget() == Widget)
	{
		ProcessReply(Widget->OnFocusReceived(Widget->GetCachedGeometry(), FFocusEvent(Cause, 0)));
	}
}

void FSlateApplication::KeepFocusOnShownWidget()
{
	if (FocusPath.Num() == 0 || FindPathTo(GetKeyboardFocusedWidget()).Num() > 0)
	{
		return;
	}
	for (int32 Index = FocusPath.Num() - 2; Index >= 0; --Index)
	{
		const TSharedPtr<SWidget> Parent = FocusPath[Index].Pin();
		if (Parent.IsValid() && Parent->SupportsKeyboardFocus() && FindPathTo(Parent).Num() > 0)
		{
			SetFocusTo(Parent, EFocusCause::OtherWidgetLostFocus);
			return;
		}
	}
	ClearKeyboardFocus(EFocusCause::OtherWidgetLostFocus);
	FocusPath.Empty();
}

FSlateWidgetPath FSlateApplication::GetFocusPath()
{
	KeepFocusOnShownWidget();
	return FindPathTo(GetKeyboardFocusedWidget());
}

bool FSlateApplication::HasMouseCapture(const TSharedRef<const SWidget>& Widget) const
{
	return MouseCaptor.Pin().Get() == &Widget.Get();
}

bool FSlateApplication::IsWidgetHovered(const SWidget& Widget) const
{
	return HoverPath.ContainsByPredicate(
		[&Widget](const TWeakPtr<SWidget>& Hovered) { return Hovered.Pin().Get() == &Widget; });
}

EMouseCursor::Type FSlateApplication::GetCursorUnderPointer() const
{
	for (int32 Index = HoverPath.Num() - 1; Index >= 0; --Index)
	{
		const TSharedPtr<SWidget> Widget = HoverPath[Index].Pin();
		if (Widget.IsValid() && Widget->GetCursor().IsSet())
		{
			return Widget->GetCursor().GetValue();
		}
	}
	return EMouseCursor::Default;
}

namespace SlateApplication
{
class FOpenMenu final : public IMenu
{
public:
	explicit FOpenMenu(const TSharedRef<SWidget>& InPopup)
		: Popup(InPopup)
	{
	}

	virtual void Dismiss() override
	{
		const TSharedPtr<SWidget> Pinned = Popup.Pin();
		if (Pinned.IsValid())
		{
			FSlateApplication::Get().DismissMenuByWidget(Pinned.ToSharedRef());
		}
	}

private:
	const TWeakPtr<SWidget> Popup;
};
}

TSharedPtr<IMenu> FSlateApplication::PushMenu(const TSharedRef<SWidget>& InParentWidget, const FWidgetPath& InOwnerPath,
	const TSharedRef<SWidget>& InContent, const FVector2D& SummonLocation,
	const FPopupTransitionEffect& TransitionEffect, const bool bFocusImmediately)
{
	const FSlateRect Anchor(static_cast<float>(SummonLocation.X), static_cast<float>(SummonLocation.Y),
		static_cast<float>(SummonLocation.X), static_cast<float>(SummonLocation.Y));
	const TSharedPtr<SPopup> Popup = MenuStack->PushAt(
		Anchor, InParentWidget, InContent, MenuPlacement_BelowAnchor, bFocusImmediately, FSimpleDelegate());
	return Popup.IsValid() ? MakeShared<SlateApplication::FOpenMenu>(Popup.ToSharedRef()).ToSharedPtr() : nullptr;
}

void FSlateApplication::DismissAllMenus()
{
	MenuStack->DismissAll();
}

void FSlateApplication::DismissMenuByWidget(const TSharedRef<SWidget>& InWidgetInMenu)
{
	MenuStack->DismissContaining(InWidgetInMenu);
}

bool FSlateApplication::AnyMenusVisible() const
{
	return MenuStack->HasMenus();
}
