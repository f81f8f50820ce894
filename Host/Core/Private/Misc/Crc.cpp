#include "Misc/Crc.h"

#include <zlib.h>

uint32 FCrc::MemCrc32(const void* Data, int32 Length, uint32 CRC)
{
	return static_cast<uint32>(::crc32(CRC, static_cast<const Bytef*>(Data), static_cast<uInt>(Length)));
}
