#pragma once

#include "Containers/UnrealString.h"

struct FPlatformProcess
{
	/** The folder of the executable, with a trailing "/". Relative paths are resolved against it. */
	static const TCHAR* BaseDir();
	static void Sleep(float Seconds);
	/**
	 * Hands an address to the desktop, which knows what opens it, and returns at once. Addresses of any scheme are
	 * accepted.
	 *
	 * @param Parms  not used
	 * @param Error  if not null: why nothing could be started, otherwise left alone
	 */
	static void LaunchURL(const TCHAR* URL, const TCHAR* Parms, FString* Error);
	/** The same for a file. @return whether something could be started */
	static bool LaunchFileInDefaultExternalApplication(const TCHAR* FileName);
};
