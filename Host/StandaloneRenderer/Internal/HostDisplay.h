#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/GenericApplication.h"

/**
 * The screen, the keyboard and the mouse, through SDL.
 *
 * Each top level window of the Slate application gets a window of the operating system as soon as the events are
 * handled next, and loses it with its SWindow.
 */
class FHostDisplay
{
public:
	virtual ~FHostDisplay() = default;

	/** Null, with the reason in the log, where there is no screen. */
	static TUniquePtr<FHostDisplay> Open();

	/** What the Slate application asks about the keyboard. */
	virtual TSharedRef<GenericApplication> GetPlatformApplication() = 0;
	/** Opens and closes windows, and passes on what the user has done since the last call. @return false: nothing */
	virtual bool HandleEvents() = 0;
	/** Sleeps until the user does something, at most so long. */
	virtual void WaitForEvent(double Seconds) = 0;
};
