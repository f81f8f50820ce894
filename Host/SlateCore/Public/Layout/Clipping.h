#pragma once

#include "CoreMinimal.h"

enum class EWidgetClipping : uint8
{
	/** What the parents clip to. */
	Inherit,
	ClipToBounds,
};
