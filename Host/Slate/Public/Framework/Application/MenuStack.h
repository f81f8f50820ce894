#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Layout/SlateRect.h"
#include "Misc/Attribute.h"
#include "Types/SlateEnums.h"

class SPopup;
class SWidget;
class SWindow;

/** How a menu comes into view; the host shows each at once. */
struct FPopupTransitionEffect
{
	enum ESlideDirection
	{
		None,
		ComboButton,
		TopMenu,
		SubMenu,
		TypeInPopup,
		ContextMenu,
	};

	explicit FPopupTransitionEffect(ESlideDirection InSlideDirection)
		: SlideDirection(InSlideDirection)
	{
	}

	ESlideDirection SlideDirection;
};

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
	/** The same beside another place than the widget's own. @param Anchor  in absolute space */
	TSharedPtr<SPopup> PushAt(const TAttribute<FSlateRect>& Anchor, const TSharedRef<SWidget>& Summoner,
		const TSharedRef<SWidget>& Content, EMenuPlacement Placement, bool bFocus, const FSimpleDelegate& OnDismissed);
	/** Closes the menu that Widget is or lies in. */
	void DismissContaining(const TSharedRef<const SWidget>& Widget);
	void DismissAll() { DismissFrom(0); }
	/** Closes what does not lie under the pointer. */
	void OnPointerDown(const TArray<TSharedRef<SWidget>>& PathUnderPointer);
	bool HasMenus() const { return Menus.Num() > 0; }
	/** The menu that the last widget of a path is in; null if it is in none. */
	TSharedPtr<SWidget> FindMenuIn(const TArray<TSharedRef<SWidget>>& Path) const;

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
