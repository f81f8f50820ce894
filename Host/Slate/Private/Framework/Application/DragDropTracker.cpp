#include "Framework/Application/DragDropTracker.h"

#include "Framework/Application/SPopup.h"
#include "Framework/Application/SlateApplication.h"

namespace DragDropTracker
{
/** Pixels that a hand may tremble. */
constexpr double TriggerDistance = 5.0;
constexpr double PointerSize = 16.0;
constexpr int32 ZOrder = 200;
}

void FDragDropTracker::Watch(const TSharedRef<SWidget>& Widget, const FKey& Button, const FPointerEvent& InPress)
{
	Watched = Widget;
	WatchedButton = Button;
	Press = InPress;
}

TSharedPtr<SWidget> FDragDropTracker::TakeDetected(const FPointerEvent& Event)
{
	const TSharedPtr<SWidget> Widget = Watched.Pin();
	const FVector2D Way = FVector2D(Event.GetScreenSpacePosition()) - FVector2D(Press.GetScreenSpacePosition());
	const bool bIsFar = FMath::Max(FMath::Abs(Way.X), FMath::Abs(Way.Y)) >= DragDropTracker::TriggerDistance;
	if (!Widget.IsValid() || !bIsFar)
	{
		return nullptr;
	}
	StopWatching();
	return Event.IsMouseButtonDown(WatchedButton) ? Widget : nullptr;
}

void FDragDropTracker::Begin(const TSharedRef<FDragDropOperation>& InContent)
{
	Content = InContent;
	Entered.Empty();
}

void FDragDropTracker::Move(const FPointerEvent& Event, const FPath& Path)
{
	const FDragDropEvent DragEvent(Event, Content);
	LastEvent = Event;
	LeaveAllBut(Path, DragEvent);
	for (const TSharedRef<SWidget>& Widget : Path)
	{
		if (!Entered.Contains(TWeakPtr<SWidget>(Widget)))
		{
			Entered.Add(Widget);
			Widget->OnDragEnter(Widget->GetCachedGeometry(), DragEvent);
		}
	}
	for (int32 Index = Path.Num() - 1; Index >= 0; --Index)
	{
		if (Path[Index]->IsEnabled() &&
			Path[Index]->OnDragOver(Path[Index]->GetCachedGeometry(), DragEvent).IsEventHandled())
		{
			break;
		}
	}
	ShowDecorator(Event, Path);
}

bool FDragDropTracker::Drop(const FPointerEvent& Event, const FPath& Path)
{
	// A widget that takes it may begin something new.
	const TSharedPtr<FDragDropOperation> Dropped = MoveTemp(Content);
	Content.Reset();
	HideDecorator();
	const FDragDropEvent DragEvent(Event, Dropped);
	bool bHandled = false;
	for (int32 Index = Path.Num() - 1; Index >= 0 && !bHandled; --Index)
	{
		const FReply Reply = Path[Index]->IsEnabled() ? Path[Index]->OnDrop(Path[Index]->GetCachedGeometry(), DragEvent)
													  : FReply::Unhandled();
		bHandled = Reply.IsEventHandled();
		if (bHandled)
		{
			FSlateApplication::Get().ProcessExternalReply(Path[Index], Reply);
		}
	}
	LeaveAllBut(FPath(), DragEvent);
	Dropped->OnDrop(bHandled, Event);
	return bHandled;
}

void FDragDropTracker::Cancel()
{
	StopWatching();
	if (!Content.IsValid())
	{
		return;
	}
	const TSharedPtr<FDragDropOperation> Dropped = MoveTemp(Content);
	Content.Reset();
	HideDecorator();
	LeaveAllBut(FPath(), FDragDropEvent(LastEvent, Dropped));
	Dropped->OnDrop(false, LastEvent);
}

void FDragDropTracker::LeaveAllBut(const FPath& Path, const FDragDropEvent& Event)
{
	for (int32 Index = Entered.Num() - 1; Index >= 0; --Index)
	{
		const TSharedPtr<SWidget> Widget = Entered[Index].Pin();
		if (!Widget.IsValid() || !Path.Contains(Widget.ToSharedRef()))
		{
			Entered.RemoveAt(Index);
			if (Widget.IsValid())
			{
				Widget->OnDragLeave(Event);
			}
		}
	}
}

void FDragDropTracker::ShowDecorator(const FPointerEvent& Event, const FPath& Path)
{
	Pointer = FVector2D(Event.GetScreenSpacePosition());
	const TSharedPtr<SWidget> Shown = Content->GetDefaultDecorator();
	if (Decorator.IsValid() || !Shown.IsValid() || Path.IsEmpty())
	{
		return;
	}
	DecoratorWindow = FSlateApplication::Get().FindWidgetWindow(Path[0]);
	const TSharedPtr<SWindow> Window = DecoratorWindow.Pin();
	if (!Window.IsValid())
	{
		return;
	}
	const auto GetAnchor = [this]() {
		return FSlateRect(Pointer, Pointer + FVector2D(DragDropTracker::PointerSize, DragDropTracker::PointerSize));
	};
	// clang-format off
	Decorator =
		SNew(SPopup)
		.Visibility(EVisibility::HitTestInvisible)
		.Anchor_Lambda(GetAnchor)
		[
			Shown.ToSharedRef()
		];
	// clang-format on
	Window->AddOverlaySlot(DragDropTracker::ZOrder)[Decorator.ToSharedRef()];
}

void FDragDropTracker::HideDecorator()
{
	const TSharedPtr<SWindow> Window = DecoratorWindow.Pin();
	if (Decorator.IsValid() && Window.IsValid())
	{
		Window->RemoveOverlaySlot(Decorator.ToSharedRef());
	}
	Decorator.Reset();
}
