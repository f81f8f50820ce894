#pragma once

#include "CoreMinimal.h"

/**
 * What a project brings for settings that are the user's: its own configuration is what they begin with. Whoever made
 * the project may not be whoever opens it.
 */
namespace KestrelProjectDefaults
{
/**
 * Whether the configuration of the project, or of a plugin in it, names one of the user's settings, or cannot be looked
 * at. Reads the files.
 */
bool SetUserSetting(const TCHAR* Name);
}
