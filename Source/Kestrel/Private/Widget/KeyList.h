#pragma once

#include "CoreMinimal.h"

class SWidget;

namespace KestrelKeyList
{
/** What each key does in the panel, as the content of a menu. */
TSharedRef<SWidget> Make();
}
