#pragma once

#include "CoreMinimal.h"

/** What the place where a menu is shown adds to it. */
struct FToolMenuContext
{
};
