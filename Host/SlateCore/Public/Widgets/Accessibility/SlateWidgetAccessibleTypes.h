#pragma once

#include "CoreMinimal.h"

/** Where a widget's words for the accessible tree come from. */
enum class EAccessibleBehavior : uint8
{
	/** The widget is not in the tree; its children may be. */
	NotAccessible,
	/** From what its class shows as text. */
	Auto,
	/** From the widgets in it. */
	Summary,
	/** From the text that was set. */
	Custom,
	/** From its tool tip. */
	ToolTip,
};

enum class EAccessibleType : uint8
{
	Main,
	Summary,
};
