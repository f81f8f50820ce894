#pragma once

#include "HAL/Platform.h"

struct FCrc
{
	/** CRC-32 of Length bytes, as of RFC 1952; CRC continues an earlier one. */
	static uint32 MemCrc32(const void* Data, int32 Length, uint32 CRC = 0);
};
