#pragma once

#include "HAL/Platform.h"

#include <cstring>

/** Work on plain memory. */
struct FMemory
{
	/** The places must not overlap. */
	static void* Memcpy(void* Dest, const void* Src, SIZE_T Count) { return std::memcpy(Dest, Src, Count); }
	/** Below 0, 0 or above 0, as the first differing byte of Buf1 is smaller, none differs, or it is larger. */
	static int32 Memcmp(const void* Buf1, const void* Buf2, SIZE_T Count) { return std::memcmp(Buf1, Buf2, Count); }
};
