#pragma once

#include "UObject/ObjectMacros.h"

class UBlueprint;

namespace KestrelBlueprintPackage
{
/** Writes the package to its file. False when it has no place on the disk, or cannot be written. */
bool Save(UBlueprint& Blueprint, EObjectFlags TopLevelFlags);
}
