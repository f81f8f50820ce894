#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Types/SlateEnums.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SPopup;

/**
 * A widget that a menu belongs to. The menu lies in front of everything else in the window. It closes when something is
 * clicked that is not in it, with Escape, and with what it belongs to.
 */
class SMenuAnchor : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SMenuAnchor)
		: _Placement(MenuPlacement_BelowAnchor)
	{
	}
	SLATE_DEFAULT_SLOT(FArguments, Content)
	/** Makes the menu each time that it opens. */
	SLATE_EVENT(FOnGetContent, OnGetMenuContent)
	SLATE_EVENT(FOnIsOpenChanged, OnMenuOpenChanged)
	SLATE_ARGUMENT(EMenuPlacement, Placement)
	SLATE_END_ARGS()

	virtual ~SMenuAnchor() override;
	void Construct(const FArguments& InArgs);

	/** @param bFocusMenu  gives the menu the keyboard focus; what had it gets it back when the menu closes */
	virtual void SetIsOpen(bool InIsOpen, const bool bFocusMenu = true);
	bool IsOpen() const { return OpenMenu.IsValid(); }
	/** False for a press that has just closed the menu, since it came from outside of the menu. */
	bool ShouldOpenDueToClick() const { return !IsOpen() && !bDismissedThisTick; }

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;

protected:
	FOnGetContent OnGetMenuContent;

private:
	void OnMenuDismissed();

	EMenuPlacement Placement = MenuPlacement_BelowAnchor;
	FOnIsOpenChanged OnMenuOpenChanged;
	TWeakPtr<SPopup> OpenMenu;
	bool bDismissedThisTick = false;
};
