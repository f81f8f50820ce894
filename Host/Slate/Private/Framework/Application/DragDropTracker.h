#pragma once

#include "CoreMinimal.h"
#include "Input/DragAndDrop.h"
#include "Widgets/SWidget.h"

class SPopup;
class SWindow;

/**
 * What the pointer drags, from the press that may become a drag to the drop.
 *
 *   Watch           a press that a widget asked about
 *   TakeDetected    the pointer has moved away from it, so the widget is asked what it wants to be dragged
 *   Begin           there is something to drag
 *   Move            widgets on the way are entered, left, and asked whether it could be dropped
 *   Drop, Cancel    it is over
 */
class FDragDropTracker
{
public:
	using FPath = TArray<TSharedRef<SWidget>>;

	void Watch(const TSharedRef<SWidget>& Widget, const FKey& Button, const FPointerEvent& InPress);
	void StopWatching() { Watched.Reset(); }
	/** The widget of the press, once, when the pointer is far enough from it; otherwise null. */
	TSharedPtr<SWidget> TakeDetected(const FPointerEvent& Event);
	const FPointerEvent& GetPress() const { return Press; }

	void Begin(const TSharedRef<FDragDropOperation>& InContent);
	void Move(const FPointerEvent& Event, const FPath& Path);
	/** @return whether a widget took it */
	bool Drop(const FPointerEvent& Event, const FPath& Path);
	void Cancel();
	const TSharedPtr<FDragDropOperation>& GetContent() const { return Content; }

private:
	void LeaveAllBut(const FPath& Path, const FDragDropEvent& Event);
	void ShowDecorator(const FPointerEvent& Event, const FPath& Path);
	void HideDecorator();

	TWeakPtr<SWidget> Watched;
	FKey WatchedButton;
	FPointerEvent Press;
	TSharedPtr<FDragDropOperation> Content;
	FPointerEvent LastEvent;
	TArray<TWeakPtr<SWidget>> Entered;
	TSharedPtr<SPopup> Decorator;
	TWeakPtr<SWindow> DecoratorWindow;
	FVector2D Pointer = FVector2D(0.0, 0.0);
};
