#pragma once

#include "CoreMinimal.h"

/** The widgets from a window to one of its own. The host knows the empty path only, which stands for a widget's own. */
class FWidgetPath
{
};
