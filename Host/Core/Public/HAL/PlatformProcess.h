#pragma once

#include "Containers/UnrealString.h"

struct FPlatformProcess
{
	/** The folder of the executable, with a trailing "/". Relative paths are resolved against it. */
	static const TCHAR* BaseDir();
	static void Sleep(float Seconds);
};
