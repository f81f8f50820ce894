#pragma once

#include "CoreMinimal.h"
#include "Framework/Application/SlateApplication.h"

/** Shows the tool tip of the widget that the pointer rests on, or to which the keyboard has moved the focus. */
class FToolTipPresenter
{
public:
	/** @param Hovered  the path under the pointer  @param Focused  null unless the keyboard chose it */
	void Tick(const TArray<TWeakPtr<SWidget>>& Hovered, const TSharedPtr<SWidget>& Focused, const FVector2D& Pointer);
	/** Takes the tool tip away until the pointer or the focus is somewhere else: the user has begun to do something. */
	void Dismiss(const TArray<TWeakPtr<SWidget>>& Hovered);

private:
	void Show(const TSharedRef<SWidget>& InSource, const FText& Text, const FSlateRect& Anchor);
	void Hide();

	TWeakPtr<SWidget> Source;
	double RestsSince = 0.0; // seconds of the application's time
	bool bIsDismissed = false;
	TSharedPtr<SWidget> Shown;
	TWeakPtr<SWindow> Window;
};
