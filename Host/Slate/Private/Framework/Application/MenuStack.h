#pragma once

#include "CoreMinimal.h"
#include "Framework/Application/SlateApplication.h"

class SPopup;

/** The menus that are open: each was summoned out of the one before it, so closing one closes those behind it. */
class FMenuStack
{
public:
	/**
	 * Opens a menu in the window of a widget, and closes the menus that the widget does not lie in.
	 *
	 * @param OnDismissed  called when the menu has been closed, by whatever
	 * @return null for a widget that is in no window
	 */
	TSharedPtr<SPopup> Push(const TSharedRef<SWidget>& Summoner, const TSharedRef<SWidget>& Content,
		EMenuPlacement Placement, bool bFocus, const FSimpleDelegate& OnDismissed);
	/** Closes the menu that Widget is or lies in. */
	void DismissContaining(const TSharedRef<const SWidget>& Widget);
	void DismissAll() { DismissFrom(0); }
	/** Closes what does not lie under the pointer. */
	void OnPointerDown(const FSlateWidgetPath& PathUnderPointer);
	bool HasMenus() const { return Menus.Num() > 0; }
	/** The menu that the last widget of a path is in; null if it is in none. */
	TSharedPtr<SWidget> FindMenuIn(const FSlateWidgetPath& Path) const;

private:
	struct FMenu
	{
		TSharedRef<SPopup> Popup;
		TWeakPtr<SWindow> Window;
		TWeakPtr<SWidget> FocusedBefore;
		FSimpleDelegate OnDismissed;
	};

	void DismissFrom(int32 Index);
	void DismissLast();
	int32 FindContaining(const TSharedPtr<const SWidget>& Widget) const;

	TArray<FMenu> Menus;
};
