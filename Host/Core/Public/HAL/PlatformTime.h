#pragma once

#include "HAL/Platform.h"

/** The editor's clock. Monotonic with an arbitrary, large offset: only differences mean anything. */
struct FPlatformTime
{
	static double Seconds();
	static uint64 Cycles64();
	static double ToSeconds64(uint64 Cycles);
};
