#pragma once

#include "CoreMinimal.h"

/** How a menu's entries are laid out. */
enum class EMultiBoxType : uint8
{
	MenuBar,
	ToolBar,
	Menu,
};

enum class EMultiBlockType : uint8
{
	None,
	MenuEntry,
	Separator,
	ToolBarButton,
};
