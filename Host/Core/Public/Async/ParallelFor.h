#pragma once

#include "HAL/Platform.h"
#include "Templates/Function.h"

enum class EParallelForFlags
{
	None = 0,
	ForceSingleThread = 1,
	Unbalanced = 2,
};

/** Calls Body with 0 to Num - 1 on worker threads and on this one, in any order; returns when all is done. */
void ParallelFor(int32 Num, TFunctionRef<void(int32)> Body, EParallelForFlags Flags = EParallelForFlags::None);
