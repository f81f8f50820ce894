#pragma once

#include "CoreMinimal.h"

/** Keeps the key, the user's and a project's own, out of what the service is told and the panel logs. */
namespace KestrelKeyGuard
{
/** The text with "[API key]" for the key, as it is or as quoted documents write it. Shorter ones than 8 stay. */
FString Hide(const FString& Text);
/**
 * Whether a file is made to hold the key: the user's settings, of any platform.
 *
 * @param RealPath  absolute, with links resolved
 */
bool IsKeptIn(const FString& RealPath);
}
