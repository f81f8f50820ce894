#pragma once

#include "CoreMinimal.h"

enum EHorizontalAlignment : int
{
	HAlign_Fill,
	HAlign_Left,
	HAlign_Center,
	HAlign_Right,
};

enum EVerticalAlignment : int
{
	VAlign_Fill,
	VAlign_Top,
	VAlign_Center,
	VAlign_Bottom,
};

enum EOrientation : int
{
	Orient_Horizontal,
	Orient_Vertical,
};

/** Why the keyboard focus moved. */
enum class EFocusCause : uint8
{
	Mouse,
	Navigation,
	SetDirectly,
	Cleared,
	OtherWidgetLostFocus,
	WindowActivate,
};

namespace ETextCommit
{
enum Type : int
{
	Default,
	OnEnter,
	OnUserMovedFocus,
	OnCleared,
};
}

namespace EButtonClickMethod
{
enum Type : int
{
	DownAndUp,
	MouseDown,
	MouseUp,
	PreciseClick,
};
}

namespace EButtonPressMethod
{
enum Type : int
{
	DownAndUp,
	ButtonPress,
	ButtonRelease,
};
}

enum class EUINavigation : uint8
{
	Next,
	Previous,
	Invalid,
};

/** When a scrolling widget keeps a wheel event from its parents. */
enum class EConsumeMouseWheel : uint8
{
	WhenScrollingPossible,
	Always,
	Never,
};

/** Where a menu opens, seen from what it belongs to. It is moved where the window would cut it off. */
enum EMenuPlacement : int
{
	/** The left edges in line; above the anchor if there is more room. */
	MenuPlacement_BelowAnchor,
	/** The same, and at least as wide as the anchor. */
	MenuPlacement_ComboBox,
	/** The upper edges in line. */
	MenuPlacement_MenuRight,
	/** The left edges in line, the menu above the anchor; below it where there is more room. */
	MenuPlacement_AboveAnchor,
};

namespace ESelectInfo
{
/** What made an item the selected one. */
enum Type : int
{
	OnKeyPress,
	OnNavigation,
	OnMouseClick,
	Direct,
};
}

/** What Slate works on in one FSlateApplication::Tick. */
enum class ESlateTickType : uint8
{
	Time,
	Widgets,
	All,
};

enum class ETextOverflowPolicy : uint8
{
	Clip,
	Ellipsis,
};
