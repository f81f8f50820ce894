#pragma once

#include "CoreMinimal.h"

/** Keeps the keys, the user's and those of a project's stages, out of what the service is told and the panel logs. */
namespace KestrelKeyGuard
{
/**
 * The text with "[API key]" for each key, as it is or as quoted documents write it. Shorter ones than 8 stay. On the
 * game thread.
 */
FString Hide(FString Text);
/**
 * Whether a file is made to hold the key: the user's settings, of any platform.
 *
 * @param RealPath  absolute, with links resolved
 */
bool IsKeptIn(const FString& RealPath);
}
