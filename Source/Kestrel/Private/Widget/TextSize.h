#pragma once

#include "CoreMinimal.h"

namespace KestrelTextSize
{
/** A size in points for the usual size of text, as it is with the size that the user has chosen. */
KESTREL_API float Scale(float Points);
}
